// Memory runs out while packages are loaded; for plain directories see memory_exhaustion_test.cpp.

#include <memory>
#include <set>
#include <string>

#include "faults/allocation_sweep.h"
#include "integration/memory_package_test.h"
#include "integration/signed_package_test.h"

namespace VelmoraQuavin::testing {
namespace {

// Loads take long; those that are refused early are quicker.
constexpr int kMost = 15;

// A load in which memory runs out while the engine is asked about itself succeeds.
void expectOneOf(const std::set<STATUS_CODE>& codes, const QuavinStatus& status, bool happened) {
    if (status.ok()) {
        return;
    }
    EXPECT_TRUE(happened) << status.getDescription();
    EXPECT_EQ(codes.count(status.getCode()), 1U) << status.getCode();
    EXPECT_NE(status.getDescription(), "");
}

// While files are read the code is another than otherwise.
const std::set<STATUS_CODE> kUsualCodes = {FAILURE, FILE_ERROR};
// Without memory for a digest, a manifest is not the one that was signed, and a key not one that is
// usable.
const std::set<STATUS_CODE> kCodesOfSigned = {FAILURE, FILE_ERROR, SIGNATURE_ERROR,
                                              INVALID_ARGUMENTS};

class LoadingAllocations : public MemoryPackageTest {
protected:
    template <typename Load>
    void sweep(Load load) {
        QuavinStatus status;
        sweepAllocations(
            kMost, [&] { status = load(); },
            [&](bool happened) {
                expectOneOf(kUsualCodes, status, happened);
                ASSERT_THAT(load(), IsOk());
                expectAffineNumbers();
            });
    }
    QuavinStatus loadFromMemory(const std::string& archive) {
        return client_.getModel(archive.data(), archive.size(), keys_, model_,
                                QuavinModelType::Openvino, options_);
    }

    EngineOptions options_;
};

TEST_F(LoadingAllocations, OfSecuredComponents) {
    writeSecuredPackage(directory_, affineNetwork(), countingKey());
    const std::shared_ptr<ModelMetadata> metadata = readManifest();
    keys_.setComponentKey(countingKey().data());
    keys_.applyTo(*metadata);
    sweep([&] { return client_.getModel(metadata, model_, QuavinModelType::Openvino); });
}

TEST_F(LoadingAllocations, OfAnArchive) {
    const std::string archive = archiveOf(packageOf(affineNetwork()), "model");
    sweep([&] { return loadFromMemory(archive); });
}

TEST_F(LoadingAllocations, OfASecuredArchive) {
    const std::string archive = securedArchiveOf(packageOf(affineNetwork()), countingKey());
    keys_.setArchiveKey(countingKey().data());
    sweep([&] { return loadFromMemory(archive); });
}

TEST_F(LoadingAllocations, WithACache) {
    writePackage(directory_, affineNetwork());
    const TempDirectory cache;
    options_.cacheDirectory = cache.text();
    const String path(directory_.text());
    sweep([&] { return client_.getModel(path, model_, 0, QuavinModelType::Openvino, options_); });
}

TEST_F(LoadingAllocations, OfAManifest) {
    writePackage(directory_, affineNetwork());
    const Filepath path(directory_.entry("manifest.json"));
    QuavinStatus status;
    sweepAllocations(
        kAllAllocations,
        [&] {
            ModelMetadata metadata;
            status = metadata.load(path);
        },
        [&](bool happened) {
            EXPECT_NE(status.ok(), happened);
            expectOneOf(kUsualCodes, status, happened);
            const std::shared_ptr<ModelMetadata> again = readManifest();
            const std::vector<ModelComponent>& components =
                again->getTargets().at(QuavinModelType::Openvino).components;
            ASSERT_EQ(components.size(), 2U);
            EXPECT_EQ(components[1].path, "net.bin");
        });
}

class SignedLoadingAllocations : public SignedPackage {
protected:
    void SetUp() override {
        write(files_);
        path_ = directory_.text();
    }
    QuavinStatus loadPath() {
        return client_.getModel(path_, model_, 0, QuavinModelType::Openvino);
    }

    String path_;
};

TEST_F(SignedLoadingAllocations, OfASignedDirectory) {
    QuavinStatus status;
    sweepAllocations(
        kMost, [&] { status = loadPath(); },
        [&](bool happened) {
            expectOneOf(kCodesOfSigned, status, happened);
            ASSERT_THAT(loadPath(), IsOk());
            expectItsNumbers();
        });
}

TEST_F(SignedLoadingAllocations, NeverLetAChangedPackageLoad) {
    const std::string weights = files_.at("net.bin");
    std::string changed = weights;
    changed.at(0) = static_cast<char>(changed.at(0) ^ 1);
    directory_.write("net.bin", changed);
    QuavinStatus status;
    sweepAllocations(
        4 * kMost, [&] { status = loadPath(); },
        [&](bool /*happened*/) {
            EXPECT_FALSE(status.ok());
            EXPECT_THAT(loadPath(), IsStatus(SIGNATURE_ERROR, signedText("net.bin")));
        });
    directory_.write("net.bin", weights);
    ASSERT_THAT(loadPath(), IsOk());
    expectItsNumbers();
}

}  // namespace
}  // namespace VelmoraQuavin::testing
