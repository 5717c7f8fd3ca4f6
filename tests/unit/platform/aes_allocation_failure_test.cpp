// Failures of the crypto library: each of its allocations fails once.

#include <gtest/gtest.h>
#include <openssl/crypto.h>
#include <openssl/err.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>

#include "quavin/encryption.h"
#include "support/status_matcher.h"
#include "unit/package/secured_bytes.h"

namespace VelmoraQuavin {
namespace {

using testing::Bytes;

// Allocations that still succeed; negative while none is to fail.
std::atomic<int> allocationsLeft{-1};

bool mayAllocate() {
    const int left = allocationsLeft.load();
    if (left > 0) {
        allocationsLeft = left - 1;
    }
    return left != 0;
}

void* allocate(std::size_t count, const char* /*file*/, int /*line*/) {
    return mayAllocate() ? std::malloc(count) : nullptr;
}
void* reallocate(void* memory, std::size_t count, const char* /*file*/, int /*line*/) {
    return mayAllocate() ? std::realloc(memory, count) : nullptr;
}
void release(void* memory, const char* /*file*/, int /*line*/) {
    std::free(memory);
}

// OpenSSL takes allocators only before its first allocation.
const bool kInstalled = CRYPTO_set_mem_functions(allocate, reallocate, release) == 1;

// Runs `decrypt` with ever more allocations granted until it succeeds; every run before that one
// must fail without a text. Returns how many failed.
template <typename Decrypt>
int countFailures(Decrypt decrypt) {
    for (int granted = 0; granted < 1000; ++granted) {
        allocationsLeft = granted;
        const QuavinStatus status = decrypt();
        allocationsLeft = -1;
        if (status.ok()) {
            return granted;
        }
        EXPECT_THAT(status, testing::IsStatus(FAILURE, ""));
        EXPECT_EQ(ERR_peek_error(), 0u);  // the host's list of errors is not ours to fill
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
        // What the library sets up once is not a call's failure.
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

TEST_F(AesAllocationFailure, IsAFailureWithoutPlaintextApart) {
    ASSERT_TRUE(kInstalled);
    Bytes output(plaintext_.size());
    const int failures = countFailures([&] {
        EXPECT_EQ(output, Bytes(output.size(), 0));
        return decrypt(component_, output.data());
    });
    // The context, and the key in it.
    EXPECT_GE(failures, 2);
    EXPECT_EQ(output, plaintext_);
}

TEST_F(AesAllocationFailure, IsAFailureThatLeavesTheComponentInPlace) {
    ASSERT_TRUE(kInstalled);
    Bytes buffer = component_;
    const int failures = countFailures([&] {
        EXPECT_EQ(buffer, component_);
        return decrypt(buffer, buffer.data());
    });
    EXPECT_GE(failures, 2);
    EXPECT_EQ(Bytes(buffer.begin(), buffer.end() - 16), plaintext_);
}

}  // namespace
}  // namespace VelmoraQuavin
