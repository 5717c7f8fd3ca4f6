// What trusted keys mean for metadata, options and the library itself.

#include <gmock/gmock.h>

#include "integration/signed_package_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsNull;
using ::testing::NotNull;

class SignedMetadata : public SignedPackage {
protected:
    SignedMetadata() { write(files_); }
    static void expectNotRead(const QuavinStatus& status) {
        EXPECT_THAT(status, IsStatus(SIGNATURE_ERROR,
                                     "The metadata was not read from one manifest after trusted "
                                     "keys were set"));
    }
};

TEST_F(SignedMetadata, CountsAsItWasReadWhateverBecomesOfTheFile) {
    const auto good = readManifest();
    directory_.write("manifest.json", files_.at("manifest.json") + " ");
    const auto changed = readManifest();
    EXPECT_THAT(loadMetadata(good), IsOk());
    directory_.write("manifest.json", files_.at("manifest.json"));
    model_.reset();
    EXPECT_THAT(loadMetadata(changed), IsStatus(SIGNATURE_ERROR, signedText("manifest.json")));
    EXPECT_THAT(model_, IsNull());
}

TEST_F(SignedMetadata, IsRefusedIfAHostBuiltIt) {
    const auto read = readManifest();
    expectNotRead(loadMetadata(std::make_shared<ModelMetadata>(
        read->getId(), read->getSdkVersion(), read->getDescription(), read->getName(), 1,
        read->getAuthor(), read->getRootDir(), read->getTargets(), "")));
}

TEST_F(SignedMetadata, IsRefusedIfItWasReadBeforeKeysWereTrusted) {
    restart({});
    const auto early = readManifest();
    restart({readPem("p256")});
    expectNotRead(loadMetadata(early));
    EXPECT_THAT(loadMetadata(readManifest()), IsOk());
}

TEST_F(SignedMetadata, IsRefusedWithATargetOfAnotherManifest) {
    const std::string other = R"({"targets": {"WinML": {}}})";
    const auto metadata = std::make_shared<ModelMetadata>();
    ASSERT_THAT(metadata->loadFromMemory(other.data(), other.size()), IsOk());
    ASSERT_THAT(metadata->load(Filepath(directory_.entry("manifest.json"))), IsOk());
    expectNotRead(loadMetadata(metadata));
}

TEST_F(SignedMetadata, LoadsFromMemoryWithTheComponentsInADirectory) {
    const std::string& manifest = files_.at("manifest.json");
    const auto metadata = std::make_shared<ModelMetadata>();
    ASSERT_THAT(metadata->loadFromMemory(manifest.data(), manifest.size()), IsOk());
    metadata->setRootDir(Filepath(directory_.text()));
    EXPECT_THAT(loadMetadata(metadata), IsOk());
}

TEST_F(SignedMetadata, AModelThatIsLoadedByItselfThrowsWhatIsWrong) {
    ASSERT_THAT(loadMetadata(readManifest()), IsOk());
    directory_.write("net.bin", std::string(64, '#'));
    const auto metadata = readManifest();
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    expectThrows<SignatureException>([&] { static_cast<void>(model_->load(metadata)); },
                                     SIGNATURE_ERROR, signedText("net.bin"));
}

class TrustedKeysOfAHost : public SignedPackage {
protected:
    TrustedKeysOfAHost() { write(files_); }
};

TEST_F(TrustedKeysOfAHost, OneThatCannotBeUsedIsNamedByEveryLoad) {
    ASSERT_THAT(load(), IsOk());
    restart({readPem("p256"), readPem("compressed")});
    const auto refused =
        IsStatus(INVALID_ARGUMENTS,
                 "Trusted key 2: it is not an uncompressed key on the curve P-256 or P-384");
    EXPECT_THAT(load(), refused);
    EXPECT_THAT(loadMetadata(readManifest()), refused);
    EXPECT_THAT(loadArchive(), refused);
    EXPECT_THAT(loadBuffers(), refused);
    EXPECT_THAT(model_, NotNull());  // unchanged
    std::vector<ModelFeatureDescriptor> ports;
    EXPECT_THAT(describeNetwork(*readManifest(), ports, ports), refused);
}

TEST_F(TrustedKeysOfAHost, WeightsAreNotMappedBesideThem) {
    options_.mapWeights = true;
    const auto refused =
        IsStatus(INVALID_ARGUMENTS,
                 "EngineOptions::mapWeights is true, but must be false while keys are trusted");
    EXPECT_THAT(loadCached(), refused);
    EXPECT_THAT(loadArchive(), refused);
    EXPECT_THAT(loadBuffers(), refused);
    restart({});
    EXPECT_THAT(loadCached(), IsOk());
}

TEST_F(TrustedKeysOfAHost, StayInForceWhileTheLibraryIsOff) {
    restart({readPem("p384")});
    const auto metadata = readManifest();
    QuavinClient::terminate();
    std::vector<ModelFeatureDescriptor> ports;
    EXPECT_THAT(describeNetwork(*metadata, ports, ports), IsStatus(SIGNATURE_ERROR, kNotTrusted));
    ASSERT_THAT(QuavinClient::init(QuavinConfig()), IsOk());
    EXPECT_THAT(describeNetwork(*metadata, ports, ports), IsOk());
}

TEST_F(TrustedKeysOfAHost, AreNoneByDefaultAndCopiedWithTheConfiguration) {
    QuavinConfig config;
    EXPECT_THAT(config.GetTrustedKeys(), IsEmpty());
    config.SetTrustedKeys({"a", "b"});
    EXPECT_THAT(QuavinConfig(config).GetTrustedKeys(), ElementsAre("a", "b"));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
