// How decryption uses the system's cryptography: what memory it allocates, and that it releases
// everything.

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstddef>

#include "platform/aes.h"
#include "support/system.h"
#include "unit/package/secured/secured_bytes.h"
#include "unit/platform/aes_memory.h"
#include "unit/platform/aes_scratch_windows.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using testing::AesScratchWatch;
using testing::Bytes;

constexpr std::size_t kComponentSize = 20'480;

class AesOfWindows : public ::testing::Test {
protected:
    AesOfWindows()
        : key_(testing::randomBytes(kAesKeySize, 1)),
          plaintext_(testing::randomBytes(kComponentSize, 2)),
          component_(testing::secure(plaintext_, key_)),
          output_(kComponentSize, 0xA5) {}

    bool decrypt(std::size_t length) {
        return decryptAes128Cbc(component_.data(), length, output_.data(), key_.data());
    }
    bool decrypt() { return decrypt(component_.size()); }
    bool outputIsUntouched() const {
        return std::all_of(output_.begin(), output_.end(),
                           [](unsigned char byte) { return byte == 0xA5; });
    }

    Bytes key_;
    Bytes plaintext_;
    Bytes component_;
    Bytes output_;
};

using AesScratch = AesOfWindows;

// Shows that the check can fail.
TEST_F(AesScratch, UnwipedBlocksAreDetected) {
    const AesScratchWatch watch(100);
    { const Bytes small(99, 1); }
    EXPECT_EQ(watch.made(), 0);
    { const Bytes large(100, 1); }
    EXPECT_EQ(watch.made(), 1);
    EXPECT_EQ(watch.size(), 100U);
    EXPECT_FALSE(watch.wasWiped());
    { const Bytes zeros(200, 0); }
    EXPECT_EQ(watch.made(), 2);
    EXPECT_TRUE(watch.wasWiped());
}

TEST_F(AesScratch, OneBlockOfTheInputsLengthIsUsedAndWiped) {
    const AesScratchWatch watch(kComponentSize / 20);
    ASSERT_TRUE(decrypt());
    EXPECT_EQ(watch.made(), 1);
    EXPECT_EQ(watch.size(), component_.size());
    EXPECT_TRUE(watch.wasWiped());
    EXPECT_EQ(output_, plaintext_);
}

TEST_F(AesScratch, TheBlockIsWipedIfDecryptionFails) {
    const AesScratchWatch watch(kComponentSize / 20);
    ASSERT_FALSE(decrypt(component_.size() - 8));
    EXPECT_EQ(watch.made(), 1);
    EXPECT_TRUE(watch.wasWiped());
}

TEST_F(AesScratch, AFailedAllocationLeavesTheOutputUntouched) {
    testing::grantAesAllocations(0);
    const bool decrypted = decrypt();
    testing::grantAllAesAllocations();
    EXPECT_FALSE(decrypted);
    EXPECT_TRUE(outputIsUntouched());
}

using AesLength = AesOfWindows;

TEST_F(AesLength, APartialBlockFailsAndLeavesTheOutputUntouched) {
    for (std::size_t cut = 1; cut < kAesBlockSize; ++cut) {
        EXPECT_FALSE(decrypt(component_.size() - cut)) << cut;
    }
    EXPECT_TRUE(outputIsUntouched());
    EXPECT_TRUE(decrypt());
}

// The system counts bytes in 32 bits: a longer length must not be cut to its low 32 bits.
TEST_F(AesLength, MoreThanTheSystemAcceptsFailsAndLeavesTheOutputUntouched) {
    const AesScratchWatch watch(kComponentSize / 20);
    EXPECT_FALSE(decrypt((std::size_t{1} << 32) + component_.size()));
    EXPECT_EQ(watch.made(), 0);
    EXPECT_TRUE(outputIsUntouched());
}

// The bytes allocated from the process's heap, as far as it can be walked.
std::size_t heapInUse() {
    const HANDLE heap = ::GetProcessHeap();
    std::size_t bytes = 0;
    PROCESS_HEAP_ENTRY entry{};
    ::HeapLock(heap);
    while (::HeapWalk(heap, &entry) != 0) {
        bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
    }
    ::HeapUnlock(heap);
    return bytes;
}

// Shows that the check can fail.
TEST(HeapInUse, GrowsWithABlock) {
    constexpr std::size_t kBlock = 5000;
    const std::size_t before = heapInUse();
    void* const block = ::HeapAlloc(::GetProcessHeap(), 0, kBlock);
    EXPECT_GE(heapInUse(), before + kBlock);
    ::HeapFree(::GetProcessHeap(), 0, block);
    EXPECT_LT(heapInUse(), before + kBlock);
}

TEST_F(AesOfWindows, LeaksNoHandleAndNoMemory) {
    constexpr int kCalls = 1000;
    const auto call = [&] {
        EXPECT_TRUE(decrypt());
        EXPECT_FALSE(decrypt(component_.size() - 8));
        testing::grantAesAllocations(0);
        const bool decrypted = decrypt();
        testing::grantAllAesAllocations();
        EXPECT_FALSE(decrypted);
    };
    call();  // the system's one-time setup
    const std::size_t handles = testing::openFiles();
    const std::size_t memory = heapInUse();
    for (int i = 0; i < kCalls; ++i) {
        call();
    }
    EXPECT_EQ(testing::openFiles(), handles);
    // A key object takes hundreds of bytes, and no block takes less than eight.
    EXPECT_LT(heapInUse(), memory + kCalls * 8);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
