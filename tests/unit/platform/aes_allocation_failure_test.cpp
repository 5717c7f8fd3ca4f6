// Each allocation that decryption makes fails once.

#include <gtest/gtest.h>

#include "quavin/encryption.h"
#include "support/status_matcher.h"
#include "unit/package/secured/secured_bytes.h"
#include "unit/platform/aes_memory.h"

namespace VelmoraQuavin {
namespace {

using testing::Bytes;
using testing::canFailAesAllocations;
using testing::grantAesAllocations;
using testing::grantAllAesAllocations;
using testing::hostSeesNoAesError;
using testing::kLeastAesAllocations;

// Runs `decrypt` with one more allocation granted each time until it succeeds; every run before
// that must fail without a message. Returns how many failed.
template <typename Decrypt>
int countFailures(Decrypt decrypt) {
    for (int granted = 0; granted < 1000; ++granted) {
        grantAesAllocations(granted);
        const QuavinStatus status = decrypt();
        grantAllAesAllocations();
        if (status.ok()) {
            return granted;
        }
        EXPECT_THAT(status, testing::IsStatus(FAILURE, ""));
        EXPECT_TRUE(hostSeesNoAesError());  // the host's list of errors is not ours to fill
    }
    ADD_FAILURE() << "never succeeds";
    return 0;
}

class AesAllocationFailure : public ::testing::Test {
protected:
    AesAllocationFailure()
        : key_(testing::randomBytes(16, 1)),
          plaintext_(testing::randomBytes(20'000, 2)),
          component_(testing::secure(plaintext_, key_)) {
        // The library's one-time setup must not count as a failure of a call.
        testing::decryptApart(component_, key_);
    }

    QuavinStatus decrypt(const Bytes& input, unsigned char* output) {
        return QuavinEncryption().AES_decrypt(input.data(), static_cast<unsigned int>(input.size()),
                                              output, key_.data());
    }

    Bytes key_;
    Bytes plaintext_;
    Bytes component_;
};

TEST_F(AesAllocationFailure, LeavesNoPlaintextInSeparateMemory) {
    ASSERT_TRUE(canFailAesAllocations());
    Bytes output(plaintext_.size());
    const int failures = countFailures([&] {
        EXPECT_EQ(output, Bytes(output.size(), 0));
        return decrypt(component_, output.data());
    });
    EXPECT_GE(failures, kLeastAesAllocations);
    EXPECT_EQ(output, plaintext_);
}

TEST_F(AesAllocationFailure, LeavesTheComponentUnchangedInPlace) {
    ASSERT_TRUE(canFailAesAllocations());
    Bytes buffer = component_;
    const int failures = countFailures([&] {
        EXPECT_EQ(buffer, component_);
        return decrypt(buffer, buffer.data());
    });
    EXPECT_GE(failures, kLeastAesAllocations);
    EXPECT_EQ(Bytes(buffer.begin(), buffer.end() - 16), plaintext_);
}

}  // namespace
}  // namespace VelmoraQuavin
