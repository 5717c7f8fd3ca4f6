#include "platform/aes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

#include "unit/package/secured/secured_bytes.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using testing::Bytes;

// Whether any whole block of `plaintext` occurs anywhere in `memory`.
bool holdsBlockOf(const Bytes& plaintext, const Bytes& memory) {
    for (std::size_t block = 0; block + kAesBlockSize <= plaintext.size(); block += kAesBlockSize) {
        const auto begin = plaintext.begin() + static_cast<std::ptrdiff_t>(block);
        if (std::search(memory.begin(), memory.end(), begin, begin + kAesBlockSize) !=
            memory.end()) {
            return true;
        }
    }
    return false;
}

// A component whose ciphertext ends inside a block, after several chunks that decrypt correctly.
class TruncatedCiphertext : public ::testing::Test {
protected:
    TruncatedCiphertext()
        : key_(testing::randomBytes(kAesKeySize, 1)),
          plaintext_(testing::randomBytes(20'480, 2)),
          component_(testing::secure(plaintext_, key_)) {
        component_.resize(component_.size() - 8);
    }

    Bytes key_;
    Bytes plaintext_;
    Bytes component_;
};

TEST_F(TruncatedCiphertext, LeavesNoPlaintextInSeparateMemory) {
    Bytes output(plaintext_.size(), 0xA5);
    EXPECT_FALSE(
        decryptAes128Cbc(component_.data(), component_.size(), output.data(), key_.data()));
    EXPECT_FALSE(holdsBlockOf(plaintext_, output));
}

TEST_F(TruncatedCiphertext, LeavesNoPlaintextInPlace) {
    EXPECT_FALSE(
        decryptAes128Cbc(component_.data(), component_.size(), component_.data(), key_.data()));
    EXPECT_FALSE(holdsBlockOf(plaintext_, component_));
}

TEST_F(TruncatedCiphertext, LeavesNoPlaintextOverTheCiphertext) {
    const std::size_t length = component_.size();
    component_.resize(length + kAesBlockSize);
    EXPECT_FALSE(decryptAes128Cbc(component_.data(), length, component_.data() + kAesBlockSize + 1,
                                  key_.data()));
    EXPECT_FALSE(holdsBlockOf(plaintext_, component_));
}

TEST(DecryptAes128Cbc, DecryptsASingleBlock) {
    const Bytes key = testing::randomBytes(kAesKeySize, 1);
    const Bytes plaintext = testing::randomBytes(kAesBlockSize, 2);
    Bytes component = testing::secure(plaintext, key);
    Bytes output(kAesBlockSize);
    EXPECT_TRUE(decryptAes128Cbc(component.data(), component.size(), output.data(), key.data()));
    EXPECT_EQ(output, plaintext);
    EXPECT_TRUE(decryptAes128Cbc(component.data(), component.size(), component.data(), key.data()));
    EXPECT_EQ(Bytes(component.begin(), component.begin() + kAesBlockSize), plaintext);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
