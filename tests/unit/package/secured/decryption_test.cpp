// AES_decrypt on valid components: a published one, and ones made with openssl.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <type_traits>

#include "quavin/encryption.h"
#include "support/status_matcher.h"
#include "unit/package/secured/secured_bytes.h"

namespace VelmoraQuavin {
namespace {

using testing::Bytes;
using testing::decryptApart;
using testing::decryptInPlace;
using testing::readVector;

Bytes fromHex(const std::string& digits) {
    Bytes bytes;
    for (std::size_t place = 0; place < digits.size(); place += 2) {
        bytes.push_back(
            static_cast<unsigned char>(std::stoi(digits.substr(place, 2), nullptr, 16)));
    }
    return bytes;
}

// NIST SP 800-38A, F.2.2: CBC-AES128.Decrypt.
const char* const kPublishedKey = "2b7e151628aed2a6abf7158809cf4f3c";
const char* const kPublishedComponent =
    "000102030405060708090a0b0c0d0e0f"
    "7649abac8119b246cee98e9b12e9197d"
    "5086cb9b507219ee95db113a917678b2"
    "73bed6b8e3c1743b7116e69e22229516"
    "3ff1caa1681fac09120eca307586e1a7";
const char* const kPublishedPlaintext =
    "6bc1bee22e409f96e93d7e117393172a"
    "ae2d8a571e03ac9c9eb76fac45af8e51"
    "30c81c46a35ce411e5fbc1191a0a52ef"
    "f69f2445df4f9b17ad2b417be66c3710";

TEST(Decryption, ReturnsThePublishedPlaintext) {
    const Bytes component = fromHex(kPublishedComponent);
    const Bytes key = fromHex(kPublishedKey);
    EXPECT_EQ(decryptApart(component, key), fromHex(kPublishedPlaintext));
    EXPECT_EQ(decryptInPlace(component, key), fromHex(kPublishedPlaintext));
}

TEST(Decryption, ReturnsThePlaintextOfAnUnpaddedComponent) {
    const Bytes component = readVector("unpadded.secured");
    const Bytes key = readVector("key.bin");
    EXPECT_EQ(decryptApart(component, key), readVector("unpadded.plain"));
    EXPECT_EQ(decryptInPlace(component, key), readVector("unpadded.plain"));
}

TEST(Decryption, KeepsTheProducersPaddingAfterThePlaintext) {
    Bytes expected = readVector("padded.plain");
    expected.insert(expected.end(), 5, 5);
    ASSERT_EQ(expected, readVector("padded.decrypted"));
    const Bytes component = readVector("padded.secured");
    const Bytes key = readVector("key.bin");
    EXPECT_EQ(decryptApart(component, key), expected);
    EXPECT_EQ(decryptInPlace(component, key), expected);
}

TEST(Decryption, SucceedsWithOtherBytesForAWrongKey) {
    const Bytes expected = readVector("padded.wrong_key");
    ASSERT_NE(expected, readVector("padded.decrypted"));
    const Bytes component = readVector("padded.secured");
    const Bytes key = readVector("wrong_key.bin");
    EXPECT_EQ(decryptApart(component, key), expected);
    EXPECT_EQ(decryptInPlace(component, key), expected);
}

TEST(Decryption, SucceedsWithNoBytesForAVectorAlone) {
    const Bytes component = testing::randomBytes(16, 1);
    const Bytes key = readVector("key.bin");
    EXPECT_TRUE(decryptApart(component, key).empty());

    Bytes buffer = component;
    unsigned char* output = buffer.data();
    EXPECT_THAT(QuavinEncryption().AES_decrypt(buffer.data(), 16, output, key.data()),
                testing::IsOk());
    EXPECT_EQ(buffer, component);
}

TEST(Decryption, NeverWritesTheDecryptedVector) {
    const Bytes component = readVector("unpadded.secured");
    const Bytes key = readVector("key.bin");
    const Bytes decryptedVector =
        testing::runAes(testing::AesMode::kEcb, testing::AesDirection::kDecrypt, key.data(),
                        nullptr, component.data(), 16);
    Bytes buffer = component;
    unsigned char* output = buffer.data();
    ASSERT_THAT(QuavinEncryption().AES_decrypt(
                    buffer.data(), static_cast<unsigned int>(buffer.size()), output, key.data()),
                testing::IsOk());
    for (const Bytes& memory : {decryptApart(component, key), buffer}) {
        EXPECT_EQ(std::search(memory.begin(), memory.end(), decryptedVector.begin(),
                              decryptedVector.end()),
                  memory.end());
    }
}

TEST(Decryption, EachCallIsIndependent) {
    QuavinEncryption encryption;
    const Bytes component = readVector("unpadded.secured");
    const Bytes key = readVector("key.bin");
    for (int call = 0; call < 3; ++call) {
        Bytes plaintext(component.size() - 16);
        unsigned char* output = plaintext.data();
        EXPECT_THAT(
            encryption.AES_decrypt(component.data(), static_cast<unsigned int>(component.size()),
                                   output, key.data()),
            testing::IsOk());
        EXPECT_EQ(plaintext, readVector("unpadded.plain"));
    }
}

TEST(Decryption, AcceptsAKeyThatTheOutputOverwrites) {
    const Bytes component = readVector("unpadded.secured");
    Bytes buffer(component.size() - 16);
    const Bytes key = readVector("key.bin");
    std::copy(key.begin(), key.end(), buffer.begin() + 32);
    unsigned char* output = buffer.data();
    EXPECT_THAT(QuavinEncryption().AES_decrypt(component.data(),
                                               static_cast<unsigned int>(component.size()), output,
                                               buffer.data() + 32),
                testing::IsOk());
    EXPECT_EQ(buffer, readVector("unpadded.plain"));
}

TEST(Decryption, LeavesTheCallersPointerUnchanged) {
    const Bytes component = readVector("unpadded.secured");
    Bytes plaintext(component.size() - 16);
    unsigned char* output = plaintext.data();
    ASSERT_THAT(QuavinEncryption().AES_decrypt(component.data(),
                                               static_cast<unsigned int>(component.size()), output,
                                               readVector("key.bin").data()),
                testing::IsOk());
    EXPECT_EQ(output, plaintext.data());
}

// A host may replace the library's cryptography with its own.
class Reversing : public QuavinEncryption {
public:
    QuavinStatus AES_decrypt(const unsigned char* input, unsigned int length,
                             unsigned char*& output, const unsigned char* /*key*/) override {
        std::reverse_copy(input + 16, input + length, output);
        return {SUCCESS, ""};
    }
};

TEST(Decryption, CanBeOverridden) {
    static_assert(std::has_virtual_destructor_v<QuavinEncryption>);
    Reversing reversing;
    QuavinEncryption& encryption = reversing;
    const Bytes component = readVector("unpadded.secured");
    Bytes plaintext(component.size() - 16);
    unsigned char* output = plaintext.data();
    EXPECT_TRUE(encryption
                    .AES_decrypt(component.data(), static_cast<unsigned int>(component.size()),
                                 output, nullptr)
                    .ok());
    EXPECT_EQ(plaintext, Bytes(component.rbegin(), component.rend() - 16));
}

}  // namespace
}  // namespace VelmoraQuavin
