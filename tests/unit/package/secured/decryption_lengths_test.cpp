// Lengths around those at which the work is split into chunks.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>

#include "quavin/encryption.h"
#include "support/status_matcher.h"
#include "unit/package/secured/secured_bytes.h"

namespace VelmoraQuavin {
namespace {

using testing::Bytes;

class DecryptionLengths : public ::testing::TestWithParam<std::size_t> {
protected:
    DecryptionLengths()
        : key_(testing::randomBytes(16, 2)),
          plaintext_(testing::randomBytes(GetParam(), 3)),
          component_(testing::secure(plaintext_, key_)) {}

    Bytes key_;
    Bytes plaintext_;
    Bytes component_;
};

TEST_P(DecryptionLengths, DecryptsIntoSeparateMemory) {
    EXPECT_EQ(testing::decryptApart(component_, key_), plaintext_);
}

TEST_P(DecryptionLengths, DecryptsInPlace) {
    EXPECT_EQ(testing::decryptInPlace(component_, key_), plaintext_);
}

INSTANTIATE_TEST_SUITE_P(, DecryptionLengths,
                         ::testing::Values(16, 32, 8176, 8192, 8208, 16368, 16384, 16400,
                                           (1u << 20) + 16, (3u << 20) + 48),
                         [](const auto& instance) { return std::to_string(instance.param); });

// More bytes than an int can count. The component is zeros, which take up no memory, except at the
// places that are checked; each of those is also decrypted on its own for comparison.
TEST(DecryptionBeyondInt, TheWholeComponentIsDecrypted) {
    constexpr std::size_t length = (std::size_t{1} << 31) + 4096;
    constexpr std::size_t window = 256;
    using Memory = std::unique_ptr<unsigned char[], decltype(&std::free)>;
    const Memory component(static_cast<unsigned char*>(std::calloc(length, 1)), std::free);
    const Memory plaintext(static_cast<unsigned char*>(std::calloc(length - 16, 1)), std::free);
    ASSERT_NE(component, nullptr);
    ASSERT_NE(plaintext, nullptr);

    const Bytes key = testing::randomBytes(16, 4);
    // The start, both sides of each gibibyte of ciphertext, and the end.
    const std::size_t places[] = {0, (std::size_t{1} << 30) - window / 2,
                                  (std::size_t{1} << 31) - window / 2, length - 16 - window};
    unsigned int seed = 5;
    for (const std::size_t place : places) {
        const Bytes content = testing::randomBytes(16 + window, seed++);
        std::copy(content.begin(), content.end(), component.get() + place);
    }

    unsigned char* output = plaintext.get();
    ASSERT_THAT(QuavinEncryption().AES_decrypt(component.get(), static_cast<unsigned int>(length),
                                               output, key.data()),
                testing::IsOk());
    for (const std::size_t place : places) {
        const unsigned char* vector = component.get() + place;
        EXPECT_EQ(Bytes(output + place, output + place + window),
                  testing::runAes(testing::AesMode::kCbc, testing::AesDirection::kDecrypt,
                                  key.data(), vector, vector + 16, window))
            << place;
    }
}

}  // namespace
}  // namespace VelmoraQuavin
