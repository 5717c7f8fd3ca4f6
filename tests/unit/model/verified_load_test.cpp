// What the loads of a library's own model do about signatures, with a model that reads nothing.

#include <gmock/gmock.h>

#include "model/engine_model.h"
#include "package/source/memory_source.h"
#include "support/recording_model.h"
#include "support/signature_data.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"
#include "unit/package/signature/signature_fixture.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kOtherManifest =
    "The digest of \"manifest.json\" is not the one that was signed";

class OwnModel : public RecordingModel, public internal::EngineModel {
public:
    using EngineModel::componentSource;
    using EngineModel::copyVerification;

    EngineInfo engineInfo() const override { return {}; }
    std::shared_ptr<QuavinModel> clone() const override { return nullptr; }

private:
    void forgetNetwork() noexcept override { calls.emplace_back("forget"); }
};

class VerifiedLoad : public ::testing::Test {
protected:
    VerifiedLoad() {
        for (const char* const name : kFiles) {
            directory_.write(name, readSignatureData("package/" + std::string(name)));
        }
    }

    std::shared_ptr<ModelMetadata> read() const {
        auto metadata = std::make_shared<ModelMetadata>();
        EXPECT_THAT(metadata->load(Filepath(directory_.entry("manifest.json"))), IsOk());
        return metadata;
    }
    void changeManifest(const std::string& manifest) const {
        directory_.write("manifest.json", manifest);
    }
    template <typename Model>
    static void expectRefused(Model& model, const std::shared_ptr<ModelMetadata>& metadata,
                              const std::string& text) {
        expectThrows<SignatureException>([&] { static_cast<void>(model.load(metadata)); },
                                         SIGNATURE_ERROR, text);
        EXPECT_FALSE(model.isLoaded());
    }

    static constexpr const char* kFiles[] = {"manifest.json", "net.xml", "net.bin", "model.sig"};
    TempDirectory directory_;
    OwnModel model_;
};

TEST_F(VerifiedLoad, NothingIsVerifiedWithoutTrustedKeys) {
    directory_.write("model.sig", "");
    ASSERT_THAT(model_.load(read()), IsOk());
    EXPECT_THAT(model_.calls, ElementsAre("prepare", "load"));
}

TEST_F(VerifiedLoad, ForgetsWhatWasReadBeforeTheKeysWereTrusted) {
    ASSERT_THAT(model_.load(read()), IsOk());
    const TrustInKeys trust;
    model_.calls.clear();
    ASSERT_THAT(model_.load(read()), IsOk());
    EXPECT_THAT(model_.calls, ElementsAre("forget", "prepare", "load"));
}

TEST_F(VerifiedLoad, KeepsWhatWasReadUnderTheSameKeys) {
    const TrustInKeys trust;
    ASSERT_THAT(model_.load(read()), IsOk());
    model_.calls.clear();
    ASSERT_THAT(model_.load(read()), IsOk());
    EXPECT_THAT(model_.calls, ElementsAre("prepare", "load"));
    OwnModel copy;
    copy.copyVerification(model_);
    ASSERT_THAT(copy.load(read()), IsOk());
    EXPECT_THAT(copy.calls, ElementsAre("prepare", "load"));
}

TEST_F(VerifiedLoad, ForgetsWhatWasReadUnderEarlierKeys) {
    for (int i = 0; i < 2; ++i) {
        const TrustInKeys trust;
        model_.calls.clear();
        ASSERT_THAT(model_.load(read()), IsOk());
        EXPECT_THAT(model_.calls, ElementsAre("forget", "prepare", "load"));
    }
}

TEST_F(VerifiedLoad, AManifestIsVerifiedBeforeAnythingIsMadeOfIt) {
    const TrustInKeys trust;
    changeManifest(R"({"targets": {"Openvino": {}}})");  // has no input names either
    expectRefused(model_, read(), kOtherManifest);
    EXPECT_THAT(model_.calls, IsEmpty());
}

TEST_F(VerifiedLoad, AModelIsNotLoadedAnyMoreOnceAManifestWasRefused) {
    const TrustInKeys trust;
    ASSERT_THAT(model_.load(read()), IsOk());
    changeManifest(R"({"targets": {}})");
    expectRefused(model_, read(), kOtherManifest);
}

TEST_F(VerifiedLoad, AManifestIsVerifiedForModelsOfHostsToo) {
    const TrustInKeys trust;
    RecordingModel model;
    ASSERT_THAT(model.load(read()), IsOk());
    changeManifest(R"({"targets": {"Openvino": {}}})");
    expectRefused(model, read(), kOtherManifest);
    EXPECT_THAT(model.calls, ElementsAre("prepare", "load"));
}

TEST_F(VerifiedLoad, APackageThatHasBeenVerifiedIsNotVerifiedAgain) {
    const TrustInKeys trust;
    const auto metadata = read();
    auto package = internal::makeComponentSource(*metadata);
    const std::weak_ptr<const internal::ComponentSource> watched = package;
    model_.duringLoad = [&] { EXPECT_EQ(model_.componentSource(*metadata), watched.lock()); };
    model_.setVerified(std::move(package));
    directory_.write("model.sig", "");
    ASSERT_THAT(model_.load(metadata), IsOk());
    EXPECT_THAT(model_.calls, ElementsAre("forget", "prepare", "load"));
    EXPECT_TRUE(watched.expired());
    expectRefused(model_, metadata,
                  "model.sig is not the signature of a model: it is not JSON in UTF-8");
}

TEST_F(VerifiedLoad, ThePackageIsLetGoIfTheLoadFails) {
    const TrustInKeys trust;
    const auto metadata = read();
    std::weak_ptr<const internal::ComponentSource> watched;
    model_.duringLoad = [&] {
        watched = model_.componentSource(*metadata);
        throw FileException("failed");
    };
    expectThrows<FileException>([&] { static_cast<void>(model_.load(metadata)); }, FILE_ERROR,
                                "failed");
    EXPECT_TRUE(watched.expired());
}

class VerifiedLoadFromMemory : public VerifiedLoad {
protected:
    VerifiedLoadFromMemory() {
        for (const char* const name : kFiles) {
            contents_.push_back(readSignatureData("package/" + std::string(name)));
        }
    }
    std::shared_ptr<internal::MemorySource> source() const {
        std::vector<PackageBuffer> buffers;
        for (std::size_t i = 0; i < contents_.size(); ++i) {
            buffers.push_back({kFiles[i], contents_[i].data(), contents_[i].size(), {}});
        }
        return std::make_shared<internal::MemorySource>(buffers);
    }
    // Its package is gone.
    std::shared_ptr<ModelMetadata> readAndForget() const {
        return internal::readMetadata(source(), {});
    }
    // As a load from memory leaves it behind.
    std::shared_ptr<ModelMetadata> loadAndForget() {
        const auto memory = source();
        auto metadata = internal::readMetadata(memory, {});
        EXPECT_THAT(model_.load(metadata), IsOk());
        model_.calls.clear();
        return metadata;
    }
    static void expectGone(OwnModel& model, const std::shared_ptr<ModelMetadata>& metadata) {
        expectThrows<FileException>(
            [&] { static_cast<void>(model.load(metadata)); }, FILE_ERROR,
            "The package was in memory, which the library did not keep: load it from there again");
        EXPECT_THAT(model.calls, IsEmpty());
    }

    std::vector<std::string> contents_;
};

TEST_F(VerifiedLoadFromMemory, NeedsNoPackageAgainIfItWasVerifiedWithTheSameKeys) {
    const TrustInKeys trust;
    const auto metadata = loadAndForget();
    ASSERT_THAT(model_.load(metadata), IsOk());
    EXPECT_THAT(model_.calls, ElementsAre("prepare", "load"));
    EXPECT_THAT(model_.load(std::make_shared<ModelMetadata>(*metadata)), IsOk());
}

TEST_F(VerifiedLoadFromMemory, NeedsThePackageAgainAfterOtherKeys) {
    std::shared_ptr<ModelMetadata> metadata;
    {
        const TrustInKeys trust;
        metadata = loadAndForget();
    }
    const TrustInKeys trust;
    expectGone(model_, metadata);
}

TEST_F(VerifiedLoadFromMemory, NeedsThePackageOfAManifestThatItDidNotVerify) {
    const TrustInKeys trust;
    loadAndForget();
    expectGone(model_, readAndForget());
    OwnModel other;
    expectGone(other, readAndForget());
}

}  // namespace
}  // namespace VelmoraQuavin::testing
