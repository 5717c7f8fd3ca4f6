#pragma once

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <new>

#include "integration/model_test.h"
#include "support/signature_data.h"
#include "support/tar_archive.h"

namespace VelmoraQuavin::testing {

/// The files of a package, by name with "/" between its parts.
using Files = std::map<std::string, std::string>;

constexpr const char* kNotTrusted = "model.sig is not signed by a trusted key";

inline QuavinConfig trusting(const std::vector<String>& pems) {
    QuavinConfig config;
    config.SetTrustedKeys(pems);
    return config;
}

/// The text for a file that is not the one that was signed.
inline std::string signedText(const std::string& name) {
    return "The digest of \"" + name + "\" is not the one that was signed";
}

/// Reads a package of tests/data/signature.
inline Files filesOf(const std::string& package) {
    const std::filesystem::path folder =
        std::filesystem::path(QUAVIN_TEST_DATA) / "signature" / package;
    Files files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            const std::string name = entry.path().lexically_relative(folder).generic_string();
            files[name] = readSignatureData(package + "/" + name);
        }
    }
    return files;
}

/// A host that trusts the key of tests/data/signature/package, and that package.
class SignedPackage : public ModelTest {
protected:
    SignedPackage() : SignedPackage({readPem("other"), readPem("p256")}) {}
    explicit SignedPackage(const std::vector<String>& keys) : ModelTest(trusting(keys)) {}
    ~SignedPackage() override { restart({}); }

    // Switches the library off and on again.
    static void restart(const std::vector<String>& keys) {
        QuavinClient::terminate();
        EXPECT_THAT(QuavinClient::init(trusting(keys)), IsOk());
    }

    void write(const Files& files) const {
        for (const auto& [name, content] : files) {
            directory_.write(name, content);
        }
    }
    QuavinStatus loadFiles() {
        write(files_);
        return load();
    }
    std::string archive() const {
        std::string archive = tarDirectory("package/");
        for (const auto& [name, content] : files_) {
            archive += tarFile("package/" + name, content);
        }
        return archive + tarEnd();
    }
    QuavinStatus loadArchive(const PackageKeys& keys = {}) { return loadBytes(archive(), keys); }
    QuavinStatus loadBytes(const std::string& archive, const PackageKeys& keys) {
        return client_.getModel(archive.data(), archive.size(), keys, model_,
                                QuavinModelType::Openvino, options_);
    }
    std::vector<PackageBuffer> buffers(bool owned = false) const {
        std::vector<PackageBuffer> buffers;
        for (const auto& [name, content] : files_) {
            // Aligned, as weights that are used in place are.
            std::shared_ptr<char[]> owner(
                static_cast<char*>(::operator new[](content.size() + 1, std::align_val_t(64))),
                [](char* bytes) { ::operator delete[](bytes, std::align_val_t(64)); });
            std::copy(content.begin(), content.end(), owner.get());
            buffers.push_back({name, owned ? owner.get() : content.data(), content.size(),
                               owned ? owner : nullptr});
        }
        return buffers;
    }
    QuavinStatus loadBuffers(const PackageKeys& keys = {}, bool owned = false) {
        return client_.getModelFromBuffers(buffers(owned), keys, model_, QuavinModelType::Openvino,
                                           options_);
    }
    QuavinStatus loadCached() {
        write(files_);
        return client_.getModel(directory_.text(), model_, 0, QuavinModelType::Openvino, options_);
    }
    QuavinStatus loadMetadata(const std::shared_ptr<ModelMetadata>& metadata) {
        return client_.getModel(metadata, model_, QuavinModelType::Openvino);
    }

    // The numbers of tests/data/numbers/just_above_one.
    void expectItsNumbers() {
        ASSERT_THAT(allocateInputs(), IsOk());
        const std::string folder = std::string(QUAVIN_TEST_DATA) + "/numbers/just_above_one/";
        std::vector<float> x(16);
        std::vector<double> y(1);
        std::ifstream(folder + "x.f32", std::ios::binary)
            .read(reinterpret_cast<char*>(x.data()), 64);
        std::ifstream(folder + "y.f64", std::ios::binary)
            .read(reinterpret_cast<char*>(y.data()), 8);
        EXPECT_NEAR(predictFloats(x).at(0), y[0], 1e-5 * std::abs(y[0]));
    }

    Files files_ = filesOf("package");
    EngineOptions options_;
};

}  // namespace VelmoraQuavin::testing
