// Memory runs out in the cryptography library, which has an allocator of its own, from each
// allocation on.

#include <filesystem>
#include <memory>
#include <string>

#include "faults/allocation_sweep.h"
#include "integration/signed_package_test.h"
#include "package/signature/verify_signature.h"
#include "quavin/files.h"
#include "support/file_tree.h"
#include "support/secured_file.h"
#include "unit/package/signature/signature_fixture.h"
#include "unit/platform/aes_memory.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::verifySignature;

// The fewest allocations that `operation` succeeds with.
template <typename Operation>
int allocationsNeeded(Operation operation) {
    int few = 0;
    int enough = 1;
    const auto succeedsWith = [&](int granted) {
        grantAesAllocations(granted);
        const bool succeeded = operation();
        grantAllAesAllocations();
        return succeeded;
    };
    while (!succeedsWith(enough)) {
        few = enough;
        enough *= 2;
    }
    while (enough - few > 1) {
        const int middle = few + (enough - few) / 2;
        (succeedsWith(middle) ? enough : few) = middle;
    }
    return enough;
}

// Repeats an operation with memory running out earlier and later; it must fail each time.
template <typename Operation>
void sweepCryptography(Operation operation) {
    constexpr int kMostSampled = 60;
    ASSERT_TRUE(canFailAesAllocations());
    ASSERT_TRUE(operation());
    const int needed = allocationsNeeded(operation);
    EXPECT_GE(needed, kLeastAesAllocations);
    for (const int which : sampleUpTo(needed, kMostSampled)) {
        SCOPED_TRACE(which);
        grantAesAllocations(which - 1);
        EXPECT_FALSE(operation());
        grantAllAesAllocations();
        EXPECT_TRUE(hostSeesNoAesError());
    }
    EXPECT_TRUE(operation());
}

bool verifies(const std::string& bundle, const std::vector<internal::TrustedKey>& keys) {
    try {
        return verifySignature(bundle, keys).size() == 3;
    } catch (const SignatureException&) {
        return false;
    }
}

TEST(CryptographyMemory, TooLittleToVerifyIsARefusal) {
    const std::vector<internal::TrustedKey> keys = {readKey("p256")};
    const std::string right = readSignatureData("package/model.sig");
    sweepCryptography([&] { return verifies(right, keys); });
    // Never the other way round.
    const std::string wrong = readBundle("payload_changed");
    for (const int granted : sampleUpTo(3000, 100)) {
        grantAesAllocations(granted);
        EXPECT_FALSE(verifies(wrong, keys)) << granted;
        grantAllAesAllocations();
    }
}

TEST(CryptographyMemory, TooLittleToDecryptAnArchiveWritesNothing) {
    const CryptoKey key = countingKey();
    const std::string archive =
        secured(tarDirectory("model/") + tarFile("model/file", "content") + tarEnd(), key,
                BlockFilling::kPkcs7);
    const auto* const bytes = reinterpret_cast<const unsigned char*>(archive.data());
    const TempDirectory directory;
    const FileTree done = {{"model", kDirectoryInTree}, {"model/file", fileInTree("content")}};
    sweepCryptography([&] {
        std::filesystem::remove_all(directory.path() / "model");
        Filepath destination(directory.text());
        const QuavinStatus status =
            FileUtils::extractSecuredTarball(bytes, archive.size(), key.data(), destination);
        if (!status.ok()) {
            EXPECT_THAT(status, IsStatus(FILE_ERROR, "Could not decrypt the archive"));
        }
        EXPECT_EQ(treeOf(directory.path()), status.ok() ? done : FileTree());
        return status.ok();
    });
}

using CryptographyMemoryOfLoading = SignedPackage;

TEST_F(CryptographyMemoryOfLoading, TooLittleIsAStatusAndTheNextLoadWorks) {
    files_ = filesOf("secured");
    write(files_);
    const std::shared_ptr<ModelMetadata> metadata = readManifest();
    PackageKeys keys;
    keys.setComponentKey(countingKey().data());
    keys.applyTo(*metadata);
    sweepCryptography([&] {
        const QuavinStatus status = loadMetadata(metadata);
        if (!status.ok()) {
            EXPECT_THAT(status.getCode(),
                        ::testing::AnyOf(SIGNATURE_ERROR, FILE_ERROR, INVALID_ARGUMENTS))
                << status.getDescription();
        }
        return status.ok();
    });
    expectItsNumbers();
}

}  // namespace
}  // namespace VelmoraQuavin::testing
