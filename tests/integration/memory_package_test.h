#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "integration/model_test.h"
#include "support/secured_file.h"

namespace VelmoraQuavin::testing {

/// Bytes on the heap that are overwritten before they are freed, so that a use after that shows.
class PassingBytes {
public:
    explicit PassingBytes(const std::string& content)
        : bytes_(new char[content.size()]), size_(content.size()) {
        std::memcpy(bytes_.get(), content.data(), size_);
    }
    PassingBytes(PassingBytes&& other) = default;
    ~PassingBytes() {
        if (bytes_ != nullptr) {
            std::memset(bytes_.get(), 0x5A, size_);
        }
    }

    const void* data() const { return bytes_.get(); }
    uint64 size() const { return size_; }

private:
    std::unique_ptr<char[]> bytes_;
    std::size_t size_;
};

/// A model of the affine network that is loaded from memory. Archives and buffers are freed before
/// it is used.
class MemoryPackageTest : public ModelTest {
protected:
    using ModelTest::ModelTest;

    QuavinStatus loadArchive(const std::string& archive, const EngineOptions& options = {}) {
        const PassingBytes bytes(archive);
        return client_.getModel(bytes.data(), bytes.size(), keys_, model_,
                                QuavinModelType::Openvino, options);
    }
    QuavinStatus loadBuffers(const PackageFiles& files, const EngineOptions& options = {}) {
        std::vector<PassingBytes> contents;
        contents.reserve(files.size());
        std::vector<PackageBuffer> buffers;
        for (const auto& [name, content] : files) {
            contents.emplace_back(content);
            buffers.push_back({name, contents.back().data(), contents.back().size(), nullptr});
        }
        return client_.getModelFromBuffers(buffers, keys_, model_, QuavinModelType::Openvino,
                                           options);
    }
    void expectAffineNumbers() {
        ASSERT_THAT(allocateInputs(), IsOk());
        EXPECT_THAT(predictFloats({1, 2, 3, -4}), ::testing::ElementsAre(2.5F, 5.F, 7.5F, -6.F));
    }

    PackageKeys keys_;
};

inline std::string securedArchiveOf(const PackageFiles& files, const CryptoKey& key) {
    return secured(archiveOf(files, "model"), key, BlockFilling::kPkcs7);
}

}  // namespace VelmoraQuavin::testing
