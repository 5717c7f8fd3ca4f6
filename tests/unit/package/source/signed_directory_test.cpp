// A signed package in a directory whose files somebody changes while they are in use.

#include <filesystem>
#include <fstream>

#include "package/source/network_components.h"
#include "package/source/signed_source.h"
#include "support/crypto.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"
#include "unit/package/signature/signature_fixture.h"

namespace VelmoraQuavin::testing {
namespace {

namespace fs = std::filesystem;

class SignedDirectory : public ::testing::Test {
protected:
    SignedDirectory() {
        for (const char* const name : {"manifest.json", "net.xml", "net.bin", "model.sig"}) {
            directory_.write(name, readSignatureData("package/" + std::string(name)));
        }
        const internal::ManifestDigest manifest{"manifest.json",
                                                sha256(readSignatureData("package/manifest.json"))};
        source_ = std::make_unique<internal::SignedSource>(
            std::make_shared<internal::DirectorySource>(Filepath(directory_.text())), &manifest,
            internal::trustedKeys());
    }

    std::unique_ptr<internal::StoredBytes> open() const {
        return source_->open(
            {source_->resolve("net.bin"), ComponentKind::File, "net.bin", Encryption()});
    }
    static std::string read(internal::StoredBytes& stored) {
        std::string content(stored.size(), '\0');
        stored.read(content.data(), content.size());
        return content;
    }
    static void expectRefused(internal::StoredBytes& stored) {
        expectThrows<SignatureException>(
            [&] { read(stored); }, SIGNATURE_ERROR,
            "The digest of \"net.bin\" is not the one that was signed");
    }
    std::string path() const { return (directory_.path() / "net.bin").string(); }

    const TrustInKeys trust_;
    const TempDirectory directory_;
    const std::string weights_ = readSignatureData("package/net.bin");
    const std::string others_ = std::string(weights_.size(), '#');
    std::unique_ptr<internal::SignedSource> source_;
};

TEST_F(SignedDirectory, GivesTheFileThatWasSigned) {
    EXPECT_EQ(read(*open()), weights_);
}

TEST_F(SignedDirectory, AFileRenamedOverOneAfterTheSignatureWasVerifiedIsRefused) {
    directory_.write("other.bin", others_);
    fs::rename(directory_.path() / "other.bin", directory_.path() / "net.bin");
    expectRefused(*open());
}

TEST_F(SignedDirectory, AFileWrittenToAfterItWasOpenedIsRefused) {
    const auto stored = open();
    std::fstream(path(), std::ios::binary | std::ios::in | std::ios::out) << others_;
    expectRefused(*stored);
}

TEST_F(SignedDirectory, AFileWrittenToWhileItIsReadIsRefused) {
    const auto stored = open();
    std::string content(stored->size(), '\0');
    const uint64 half = content.size() / 2;
    stored->read(content.data(), half);
    std::fstream(path(), std::ios::binary | std::ios::in | std::ios::out) << others_;
    expectThrows<SignatureException>(
        [&] { stored->read(content.data() + half, content.size() - half); }, SIGNATURE_ERROR,
        "The digest of \"net.bin\" is not the one that was signed");
}

TEST_F(SignedDirectory, AFileCutAfterItWasOpenedIsRefused) {
    const auto stored = open();
    fs::resize_file(directory_.path() / "net.bin", weights_.size() / 2);
    expectRefused(*stored);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
