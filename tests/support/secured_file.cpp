#include "support/secured_file.h"

#include <stdexcept>

#include "support/crypto.h"

namespace VelmoraQuavin::testing {
namespace {

constexpr std::size_t kBlock = 16;
// Any vector will do; a readable one makes dumps easier to read.
constexpr std::string_view kVector = "initial--vector-";
static_assert(kVector.size() == kBlock);

const unsigned char* bytesOf(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

}  // namespace

CryptoKey countingKey() {
    CryptoKey key{};
    for (std::size_t i = 0; i < key.size(); ++i) {
        key[i] = static_cast<unsigned char>(i);
    }
    return key;
}

CryptoKey anotherKey() {
    CryptoKey key{};
    key.fill(0x5A);
    return key;
}

std::string secured(std::string_view plain, const CryptoKey& key, BlockFilling filling) {
    std::string padded(plain);
    if (filling == BlockFilling::kPkcs7) {
        const std::size_t padding = kBlock - plain.size() % kBlock;
        padded.append(padding, static_cast<char>(padding));
    }
    if (padded.size() % kBlock != 0) {
        throw std::runtime_error("a text with an incomplete block needs padding");
    }
    const auto ciphertext = runAes(AesMode::kCbc, AesDirection::kEncrypt, key.data(),
                                   bytesOf(kVector), bytesOf(padded), padded.size());
    return std::string(kVector).append(ciphertext.begin(), ciphertext.end());
}

std::string filledWithSpaces(std::string text) {
    text.resize((text.size() + kBlock - 1) / kBlock * kBlock, ' ');
    return text;
}

}  // namespace VelmoraQuavin::testing
