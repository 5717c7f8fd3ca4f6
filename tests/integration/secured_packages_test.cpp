// Packages whose files are encrypted: the components' names say so, and the host supplies the keys.

#include <filesystem>
#include <set>

#include "integration/model_test.h"
#include "support/secured_file.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using Components = std::vector<std::pair<std::string, std::string>>;

class SecuredPackage : public ModelTest {
protected:
    SecuredPackage() {
        describeComponents({{"secured_file", "net.xml"}, {"secured_file", "net.bin"}});
    }

    void describeComponents(const Components& components) {
        PackageText text = describe(affineNetwork());
        text.components = components;
        writeManifest(directory_, text);
    }
    // Pads both files to whole blocks as given; unpadded ones are extended by bytes that their
    // readers skip.
    void writeSecured(BlockFilling filling, const CryptoKey& key = countingKey()) {
        std::string topology = affineNetwork().topology();
        std::string weights = affineNetwork().weights();
        if (filling == BlockFilling::kNone) {
            topology = filledWithSpaces(topology);
            weights.resize((weights.size() + 15) / 16 * 16);
        }
        directory_.write("net.xml", secured(topology, key, filling));
        directory_.write("net.bin", secured(weights, key, filling));
    }
    QuavinStatus loadWithKeys(const CryptoKey& topologyKey, const CryptoKey& weightsKey) {
        const auto metadata = readManifest();
        auto& components = metadata->getTargets().at(QuavinModelType::Openvino).components;
        components.at(0).setCryptoKey(topologyKey.data());
        components.at(1).setCryptoKey(weightsKey.data());
        return client_.getModel(metadata, model_, QuavinModelType::Openvino);
    }
    QuavinStatus loadWithKey() { return loadWithKeys(countingKey(), countingKey()); }
    void expectAffineNumbers() {
        ASSERT_THAT(allocateInputs(), IsOk());
        EXPECT_THAT(predictFloats({1, 2, 3, -4}), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
    }
};

TEST_F(SecuredPackage, PaddedFilesLoadAndPredict) {
    writeSecured(BlockFilling::kPkcs7);
    ASSERT_THAT(loadWithKey(), IsOk());
    expectAffineNumbers();
}

TEST_F(SecuredPackage, UnpaddedFilesOfWholeBlocksLoadAndPredict) {
    writeSecured(BlockFilling::kNone);
    ASSERT_THAT(loadWithKey(), IsOk());
    expectAffineNumbers();
}

TEST_F(SecuredPackage, ATopologyOfWholeBlocksMayEndInAWholeBlockOfPadding) {
    writeSecured(BlockFilling::kPkcs7);
    const std::string topology = filledWithSpaces(affineNetwork().topology());
    directory_.write("net.xml", secured(topology, countingKey(), BlockFilling::kPkcs7));
    ASSERT_EQ(directory_.read("net.xml").size(), 16 + topology.size() + 16);
    ASSERT_THAT(loadWithKey(), IsOk());
    expectAffineNumbers();
}

TEST_F(SecuredPackage, LoadsThroughTheDeviceOverloadToo) {
    writeSecured(BlockFilling::kPkcs7);
    const auto metadata = readManifest();
    for (auto& component : metadata->getTargets().at(QuavinModelType::Openvino).components) {
        component.setCryptoKey(countingKey().data());
    }
    ASSERT_THAT(client_.getModel(metadata, model_, Device()), IsOk());
    expectAffineNumbers();
}

TEST_F(SecuredPackage, EachComponentHasItsOwnKey) {
    writeSecured(BlockFilling::kPkcs7);
    directory_.write("net.bin",
                     secured(affineNetwork().weights(), anotherKey(), BlockFilling::kPkcs7));
    ASSERT_THAT(loadWithKeys(countingKey(), anotherKey()), IsOk());
    expectAffineNumbers();
}

TEST_F(SecuredPackage, PlainAndSecuredComponentsMix) {
    writeSecured(BlockFilling::kPkcs7);
    describeComponents({{"secured_file", "net.xml"}, {"file", "net.bin"}});
    directory_.write("net.bin", affineNetwork().weights());
    ASSERT_THAT(loadWithKey(), IsOk());
    expectAffineNumbers();

    writeSecured(BlockFilling::kPkcs7);
    describeComponents({{"file", "net.xml"}, {"secured_file", "net.bin"}});
    directory_.write("net.xml", affineNetwork().topology());
    ASSERT_THAT(loadWithKey(), IsOk());
    expectAffineNumbers();
}

TEST_F(SecuredPackage, TheNameDecidesOnDecryptionNotTheEncryptionMember) {
    // Plain files that are marked as encrypted.
    writePackage(directory_, affineNetwork());
    std::string manifest = describe(affineNetwork()).manifest();
    for (std::size_t at = 0; (at = manifest.find(R"("name": "file")", at)) != std::string::npos;) {
        const std::string marked = R"("encryption": "aes", "name": "file")";
        manifest.replace(at, 14, marked);
        at += marked.size();
    }
    directory_.write("manifest.json", manifest);
    ASSERT_THAT(load(), IsOk());
    expectAffineNumbers();
}

TEST_F(SecuredPackage, TheKeyDefaultsToSixteenZeros) {
    writeSecured(BlockFilling::kPkcs7, CryptoKey{});
    ASSERT_THAT(load(), IsOk());
    expectAffineNumbers();
}

TEST_F(SecuredPackage, AWrongTopologyKeyAnswersTheEnginesReadError) {
    writeSecured(BlockFilling::kPkcs7);
    EXPECT_THAT(loadWithKeys(anotherKey(), countingKey()),
                IsStatusWith(FILE_ERROR, Not(IsEmpty())));
}

TEST_F(SecuredPackage, AWrongWeightsKeyGoesUnnoticedAndYieldsMeaninglessNumbers) {
    writeSecured(BlockFilling::kPkcs7);
    ASSERT_THAT(loadWithKeys(countingKey(), anotherKey()), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    EXPECT_THAT(predictFloats({1, 2, 3, -4}), Not(ElementsAre(2.5F, 5.F, 7.5F, -6.F)));
}

TEST_F(SecuredPackage, AMissingKeyAnswersTheEnginesReadError) {
    writeSecured(BlockFilling::kPkcs7);
    EXPECT_THAT(load(), IsStatusWith(FILE_ERROR, Not(IsEmpty())));
}

TEST_F(SecuredPackage, SecuredFilesNamedAsPlainOnesAnswerTheEnginesReadError) {
    writeSecured(BlockFilling::kPkcs7);
    describeComponents({{"file", "net.xml"}, {"file", "net.bin"}});
    EXPECT_THAT(loadWithKey(), IsStatusWith(FILE_ERROR, Not(IsEmpty())));
}

TEST_F(SecuredPackage, ATopologyOfInvalidSizeAnswersWithItsPath) {
    writeSecured(BlockFilling::kPkcs7);
    const std::string whole = directory_.read("net.xml");
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{15}, std::size_t{17}, whole.size() - 1}) {
        directory_.write("net.xml", whole.substr(0, size));
        EXPECT_THAT(loadWithKey(), IsStatusWith(FILE_ERROR, HasSubstr(directory_.entry("net.xml"))))
            << size;
    }
}

TEST_F(SecuredPackage, WeightsOfInvalidSizeAnswerWithTheirPath) {
    writeSecured(BlockFilling::kPkcs7);
    const std::string whole = directory_.read("net.bin");
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{15}, std::size_t{17}, whole.size() - 1}) {
        directory_.write("net.bin", whole.substr(0, size));
        EXPECT_THAT(loadWithKey(), IsStatusWith(FILE_ERROR, HasSubstr(directory_.entry("net.bin"))))
            << size;
    }
}

TEST_F(SecuredPackage, ATopologyWithoutCiphertextIsEmptyAndTheEngineRefusesIt) {
    writeSecured(BlockFilling::kPkcs7);
    directory_.write("net.xml", std::string(16, 'v'));
    EXPECT_THAT(loadWithKey(), IsStatusWith(FILE_ERROR, Not(IsEmpty())));
}

TEST_F(SecuredPackage, WeightsWithoutCiphertextSufficeForANetworkWithoutConstants) {
    PackageText text = describe(sumNetwork());
    text.components = {{"secured_file", "net.xml"}, {"secured_file", "net.bin"}};
    writeManifest(directory_, text);
    directory_.write("net.xml",
                     secured(sumNetwork().topology(), countingKey(), BlockFilling::kPkcs7));
    directory_.write("net.bin", std::string(16, 'v'));
    ASSERT_THAT(loadWithKey(), IsOk());
    inputs_ = {featureOf<float>("x", {1, 2}, DataType::FLOAT, {1, 2})};
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.F, 4.F));
}

TEST_F(SecuredPackage, AFileOfFourGibibytesIsRefusedNamingItsPath) {
    // Sparse files: nothing is written, and nothing may be read.
    constexpr std::uintmax_t kFourGibibytes = std::uintmax_t{1} << 32;
    for (const std::string name : {"net.xml", "net.bin"}) {
        writeSecured(BlockFilling::kPkcs7);
        std::filesystem::resize_file(directory_.path() / name, kFourGibibytes);
        EXPECT_THAT(loadWithKey(), IsStatusWith(FILE_ERROR, HasSubstr(directory_.entry(name))));
    }
}

TEST_F(SecuredPackage, MissingFilesAnswerTheFileLayersText) {
    EXPECT_THAT(loadWithKey(), IsStatus(FILE_ERROR, "File error!"));
}

TEST_F(SecuredPackage, NoTextRevealsAKeyOrPlaintext) {
    writeSecured(BlockFilling::kPkcs7);
    const CryptoKey key = {'s', 'e', 'c', 'r', 'e', 't', ' ', 'k',
                           'e', 'y', ' ', '1', '2', '3', '4', '5'};
    const QuavinStatus status = loadWithKeys(key, key);
    EXPECT_THAT(status.getDescription().str(),
                AllOf(Not(HasSubstr("secret key")), Not(HasSubstr("affine"))));
}

TEST_F(SecuredPackage, PlaintextNeverReachesTheDisk) {
    writeSecured(BlockFilling::kPkcs7);
    const auto content = [&] {
        std::set<std::pair<std::string, std::string>> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory_.path())) {
            const std::string name = entry.path().filename().string();
            files.emplace(name, directory_.read(name));
        }
        return files;
    };
    const auto before = content();
    ASSERT_EQ(before.size(), 3U);
    // The package and the working directory are the only places the library could write to unasked.
    const auto workingDirectory = std::filesystem::current_path();
    std::filesystem::current_path(directory_.path());
    const QuavinStatus status = loadWithKey();
    std::filesystem::current_path(workingDirectory);
    ASSERT_THAT(status, IsOk());
    expectAffineNumbers();
    EXPECT_EQ(content(), before);
    for (const auto& [name, text] : before) {
        EXPECT_THAT(text, Not(HasSubstr("<net"))) << name;
    }
}

}  // namespace
}  // namespace VelmoraQuavin::testing
