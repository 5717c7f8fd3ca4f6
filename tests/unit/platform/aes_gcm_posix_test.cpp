#include "platform/aes_gcm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "support/hex.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using Bytes = std::vector<unsigned char>;
using testing::bytesFromHex;

GcmSeal sealOf(const std::string& nonce, const std::string& tag) {
    GcmSeal seal{};
    const Bytes nonceBytes = bytesFromHex(nonce);
    const Bytes tagBytes = bytesFromHex(tag);
    std::copy(nonceBytes.begin(), nonceBytes.end(), seal.nonce.begin());
    std::copy(tagBytes.begin(), tagBytes.end(), seal.tag.begin());
    return seal;
}

bool decrypt(const Bytes& key, const Bytes& additional, Bytes& bytes, const GcmSeal& seal) {
    return decryptAes256Gcm(key.data(), additional.data(), additional.size(), bytes.data(),
                            bytes.size(), seal);
}

// Test cases 13 to 16 of the algorithm's submission to NIST.
const Bytes kKey = bytesFromHex("feffe9928665731c6d6a8f9467308308feffe9928665731c6d6a8f9467308308");
const Bytes kAdditional = bytesFromHex("feedfacedeadbeeffeedfacedeadbeefabaddad2");
const Bytes kPlain = bytesFromHex(
    "d9313225f88406e5a55909c5aff5269a86a7a9531534f7da2e4c303d8a318a72"
    "1c3c0c95956809532fcf0e2449a6b525b16aedf5aa0de657ba637b39");
const Bytes kCipher = bytesFromHex(
    "522dc1f099567d07f47f37a32a84427d643a8cdcbfe5c0c97598a2bd2555d1aa"
    "8cb08e48590dbb3da7b08b1056828838c5f61e6393ba7a0abcc9f662");
const GcmSeal kSeal = sealOf("cafebabefacedbaddecaf888", "76fc6ece0f4e1768cddf8853bb2d551b");

TEST(AesGcm, DecryptsThePublishedCiphertexts) {
    Bytes bytes = kCipher;
    EXPECT_TRUE(decrypt(kKey, kAdditional, bytes, kSeal));
    EXPECT_EQ(bytes, kPlain);

    const std::string noNonce(24, '0');
    bytes = bytesFromHex("cea7403d4d606b6e074ec5d3baf39d18");
    EXPECT_TRUE(decrypt(Bytes(32), {}, bytes, sealOf(noNonce, "d0d1c8a799996bf0265b98b5d48ab919")));
    EXPECT_EQ(bytes, Bytes(16));

    bytes.clear();
    EXPECT_TRUE(decrypt(Bytes(32), {}, bytes, sealOf(noNonce, "530f8afbc74536b9a963b4f1c4cb738b")));
}

TEST(AesGcm, DecryptsWhatItEncrypted) {
    for (const std::size_t size : {0U, 1U, 16U, 60U, 100'000U}) {
        Bytes bytes(size, 'x');
        GcmSeal seal{};
        ASSERT_TRUE(encryptAes256Gcm(kKey.data(), kAdditional.data(), kAdditional.size(),
                                     bytes.data(), bytes.size(), seal));
        if (size >= 16) {
            EXPECT_NE(bytes, Bytes(size, 'x'));
        }
        EXPECT_TRUE(decrypt(kKey, kAdditional, bytes, seal));
        EXPECT_EQ(bytes, Bytes(size, 'x'));
    }
}

TEST(AesGcm, UsesANewNonceEachTime) {
    std::set<std::string> nonces;
    for (int i = 0; i < 100; ++i) {
        GcmSeal seal{};
        ASSERT_TRUE(encryptAes256Gcm(kKey.data(), nullptr, 0, nullptr, 0, seal));
        nonces.insert(testing::hexOf(seal.nonce));
    }
    EXPECT_EQ(nonces.size(), 100U);
}

// Expects a refusal that leaves nothing of the plaintext.
void expectRefused(const Bytes& key, const Bytes& additional, Bytes bytes, const GcmSeal& seal) {
    EXPECT_FALSE(decrypt(key, additional, bytes, seal));
    EXPECT_EQ(bytes, Bytes(bytes.size()));
}

TEST(AesGcm, RefusesAnyChangeAndLeavesNoPlaintext) {
    const auto changed = [](auto bytes, std::size_t index) {
        bytes[index] = static_cast<unsigned char>(bytes[index] ^ 1);
        return bytes;
    };
    for (std::size_t i = 0; i < kKey.size(); ++i) {
        expectRefused(changed(kKey, i), kAdditional, kCipher, kSeal);
    }
    for (std::size_t i = 0; i < kAdditional.size(); ++i) {
        expectRefused(kKey, changed(kAdditional, i), kCipher, kSeal);
    }
    for (std::size_t i = 0; i < kCipher.size(); ++i) {
        expectRefused(kKey, kAdditional, changed(kCipher, i), kSeal);
    }
    for (std::size_t i = 0; i < kGcmNonceSize; ++i) {
        expectRefused(kKey, kAdditional, kCipher, {changed(kSeal.nonce, i), kSeal.tag});
    }
    for (std::size_t i = 0; i < kGcmTagSize; ++i) {
        expectRefused(kKey, kAdditional, kCipher, {kSeal.nonce, changed(kSeal.tag, i)});
    }
    expectRefused(kKey, kAdditional, Bytes(kCipher.begin(), kCipher.end() - 1), kSeal);
    expectRefused(kKey, {}, kCipher, kSeal);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
