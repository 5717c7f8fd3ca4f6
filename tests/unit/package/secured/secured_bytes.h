#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "quavin/encryption.h"
#include "support/crypto.h"

namespace VelmoraQuavin::testing {

using Bytes = std::vector<unsigned char>;

/// Pseudo-random bytes, the same in every run.
inline Bytes randomBytes(std::size_t count, unsigned int seed) {
    std::mt19937 random(seed);
    Bytes bytes(count);
    for (unsigned char& byte : bytes) {
        byte = static_cast<unsigned char>(random() & 0xFFu);
    }
    return bytes;
}

/// Reads a file from tests/data/aes.
inline Bytes readVector(const std::string& name) {
    std::ifstream stream(std::string(QUAVIN_TEST_DATA) + "/aes/" + name, std::ios::binary);
    Bytes bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream.is_open() || bytes.empty()) {
        throw std::runtime_error("cannot read the vector " + name);
    }
    return bytes;
}

/// A secured component of whole blocks: an initialisation vector, then the ciphertext from the
/// system's library.
inline Bytes secure(const Bytes& plaintext, const Bytes& key) {
    Bytes component = randomBytes(16, 99);
    const Bytes ciphertext = runAes(AesMode::kCbc, AesDirection::kEncrypt, key.data(),
                                    component.data(), plaintext.data(), plaintext.size());
    component.insert(component.end(), ciphertext.begin(), ciphertext.end());
    return component;
}

/// Decrypts into separate memory and checks that nothing outside the plaintext is written.
inline Bytes decryptApart(const Bytes& component, const Bytes& key) {
    constexpr std::size_t kGuard = 32;
    const std::size_t size = component.size() - 16;
    Bytes arena(kGuard + size + kGuard, 0xA5);
    unsigned char* output = arena.data() + kGuard;
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): shows that nothing writes there
    const Bytes before = component;
    const QuavinStatus status = QuavinEncryption().AES_decrypt(
        component.data(), static_cast<unsigned int>(component.size()), output, key.data());
    EXPECT_EQ(status.getCode(), SUCCESS);
    EXPECT_TRUE(status.getDescription().empty());
    EXPECT_EQ(component, before);
    const auto begin = arena.begin() + kGuard;
    const auto end = begin + static_cast<std::ptrdiff_t>(size);
    EXPECT_EQ(Bytes(arena.begin(), begin), Bytes(kGuard, 0xA5));
    EXPECT_EQ(Bytes(end, arena.end()), Bytes(kGuard, 0xA5));
    return {begin, end};
}

/// Decrypts over the component itself and checks that nothing after the plaintext is written.
inline Bytes decryptInPlace(const Bytes& component, const Bytes& key) {
    Bytes buffer = component;
    unsigned char* output = buffer.data();
    const QuavinStatus status = QuavinEncryption().AES_decrypt(
        buffer.data(), static_cast<unsigned int>(buffer.size()), output, key.data());
    EXPECT_EQ(status.getCode(), SUCCESS);
    EXPECT_TRUE(status.getDescription().empty());
    EXPECT_EQ(Bytes(buffer.end() - 16, buffer.end()), Bytes(component.end() - 16, component.end()));
    buffer.resize(buffer.size() - 16);
    return buffer;
}

}  // namespace VelmoraQuavin::testing
