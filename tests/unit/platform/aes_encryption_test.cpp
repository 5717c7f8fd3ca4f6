#include "platform/aes_encryption.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <vector>

namespace VelmoraQuavin::internal::platform {
namespace {

using Bytes = std::vector<unsigned char>;

// The AES-128 CBC example from NIST SP 800-38A, F.2.1.
const Bytes kKey128 = {0x2b, 0x7e, 0x15, 0x16, 0x28, 0xae, 0xd2, 0xa6,
                       0xab, 0xf7, 0x15, 0x88, 0x09, 0xcf, 0x4f, 0x3c};
const Bytes kVector = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
const Bytes kPlain128 = {0x6b, 0xc1, 0xbe, 0xe2, 0x2e, 0x40, 0x9f, 0x96, 0xe9, 0x3d, 0x7e,
                         0x11, 0x73, 0x93, 0x17, 0x2a, 0xae, 0x2d, 0x8a, 0x57, 0x1e, 0x03,
                         0xac, 0x9c, 0x9e, 0xb7, 0x6f, 0xac, 0x45, 0xaf, 0x8e, 0x51};
const Bytes kCipher128 = {0x76, 0x49, 0xab, 0xac, 0x81, 0x19, 0xb2, 0x46, 0xce, 0xe9, 0x8e,
                          0x9b, 0x12, 0xe9, 0x19, 0x7d, 0x50, 0x86, 0xcb, 0x9b, 0x50, 0x72,
                          0x19, 0xee, 0x95, 0xdb, 0x11, 0x3a, 0x91, 0x76, 0x78, 0xb2};

TEST(AesEncryption, ReturnsThePublishedCiphertext) {
    Bytes output(kPlain128.size());
    ASSERT_TRUE(encryptAes128Cbc(kPlain128.data(), kPlain128.size(), kVector.data(), output.data(),
                                 kKey128.data()));
    EXPECT_EQ(output, kCipher128);
}

TEST(AesEncryption, WorksInPlace) {
    Bytes bytes = kPlain128;
    ASSERT_TRUE(
        encryptAes128Cbc(bytes.data(), bytes.size(), kVector.data(), bytes.data(), kKey128.data()));
    EXPECT_EQ(bytes, kCipher128);
}

TEST(AesEncryption, EmptyInputWritesNothing) {
    unsigned char untouched = 0xA5;
    EXPECT_TRUE(encryptAes128Cbc(kPlain128.data(), 0, kVector.data(), &untouched, kKey128.data()));
    EXPECT_EQ(untouched, 0xA5);
}

TEST(AesEncryption, APartialBlockFails) {
    Bytes output(kPlain128.size());
    EXPECT_FALSE(
        encryptAes128Cbc(kPlain128.data(), 15, kVector.data(), output.data(), kKey128.data()));
}

TEST(RandomBytes, FillTheMemoryAndNothingElse) {
    // A byte stays zero in all twenty rounds with a probability of 256^-20.
    std::array<unsigned char, 34> seen{};
    for (int round = 0; round < 20; ++round) {
        std::array<unsigned char, 34> memory{};
        ASSERT_TRUE(fillRandom(memory.data() + 1, 32));
        for (std::size_t i = 0; i < memory.size(); ++i) {
            seen.at(i) = static_cast<unsigned char>(seen.at(i) | memory.at(i));
        }
    }
    EXPECT_EQ(seen.front(), 0);
    EXPECT_EQ(seen.back(), 0);
    for (std::size_t i = 1; i <= 32; ++i) {
        EXPECT_NE(seen.at(i), 0) << i;
    }
}

TEST(RandomBytes, DifferFromCallToCall) {
    std::set<Bytes> values;
    for (int i = 0; i < 100; ++i) {
        Bytes value(16);
        ASSERT_TRUE(fillRandom(value.data(), value.size()));
        values.insert(value);
    }
    EXPECT_EQ(values.size(), 100U);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
