#include "tools/quavin/package/secured_bytes.h"

#include <cstring>

#include "package/secured/format.h"
#include "platform/aes_encryption.h"
#include "quavin/encryption.h"
#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {
namespace {

namespace platform = VelmoraQuavin::internal::platform;
using VelmoraQuavin::InvalidArgumentsException;

constexpr std::uint64_t kBlock = VelmoraQuavin::internal::kSecuredBlockSize;
using VelmoraQuavin::internal::isSecuredSize;
using VelmoraQuavin::internal::kLargestSecuredFile;

}  // namespace

WipedBytes encrypt(std::string_view plain, const Key& key) {
    const std::uint64_t padding = kBlock - plain.size() % kBlock;
    const std::uint64_t padded = plain.size() + padding;
    if (padded > kLargestSecuredFile - kBlock) {
        throw InvalidArgumentsException("A secured file must be smaller than 4 GiB, not " +
                                        std::to_string(padded + kBlock) + " bytes");
    }
    WipedBytes secured(kBlock + padded);
    unsigned char* const vector = secured.data();
    unsigned char* const content = vector + kBlock;
    std::memcpy(content, plain.data(), plain.size());
    std::memset(content + plain.size(), static_cast<int>(padding), padding);
    if (!platform::fillRandom(vector, kBlock) ||
        !platform::encryptAes128Cbc(content, padded, vector, content, key.bytes())) {
        throw VelmoraQuavin::Exception("The system's cryptography failed");
    }
    return secured;
}

std::string securedLengthProblem(std::uint64_t length) {
    if (!isSecuredSize(length)) {
        return "has " + std::to_string(length) +
               " bytes; the size of a secured file is a multiple of 16, at least 16 and less than "
               "4 GiB";
    }
    return "";
}

WipedBytes decrypt(const WipedBytes& secured, const unsigned char* key, const std::string& name) {
    const std::string problem = securedLengthProblem(secured.size());
    if (!problem.empty()) {
        throw InvalidArgumentsException(name + " " + problem);
    }
    WipedBytes plain(secured.size() - kBlock);
    unsigned char* output = plain.data();
    if (!VelmoraQuavin::QuavinEncryption()
             .AES_decrypt(secured.data(), static_cast<unsigned int>(secured.size()), output, key)
             .ok()) {
        throw VelmoraQuavin::FileException(name + " cannot be decrypted");
    }
    return plain;
}

std::optional<std::uint64_t> paddingOf(std::string_view plain) {
    if (plain.empty()) {
        return std::nullopt;
    }
    const auto count = static_cast<unsigned char>(plain.back());
    if (count == 0 || count > kBlock || count > plain.size()) {
        return std::nullopt;
    }
    const std::string_view padding = plain.substr(plain.size() - count);
    if (padding.find_first_not_of(plain.back()) != std::string_view::npos) {
        return std::nullopt;
    }
    return count;
}

}  // namespace quavin_tool
