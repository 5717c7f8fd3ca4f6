#include "quavin/encryption.h"

#include <cstring>

#include "core/secure_wipe.h"
#include "package/secured/format.h"
#include "platform/aes.h"

namespace VelmoraQuavin {
namespace {

using internal::platform::kAesKeySize;

bool areUsable(const unsigned char* input, unsigned int length, const unsigned char* output,
               const unsigned char* key) {
    if (input == nullptr || key == nullptr || !internal::isSecuredSize(length)) {
        return false;
    }
    return output != nullptr || length == internal::kSecuredVectorSize;
}

}  // namespace

Encryption::Encryption() : key_{}, paddingType_(PaddingType::NONE) {}

Encryption::Encryption(std::array<unsigned char, 16>&& key, PaddingType padding)
    : key_(key), paddingType_(padding) {
    internal::secureWipe(key.data(), key.size());
}

Encryption::~Encryption() {
    internal::secureWipe(key_.data(), key_.size());
}

void Encryption::setKey(const unsigned char* key) {
    if (key == nullptr) {
        throw InvalidArgumentsException("A crypto key must not be null");
    }
    std::memmove(key_.data(), key, kAesKeySize);
}

QuavinEncryption::~QuavinEncryption() = default;

QuavinStatus QuavinEncryption::AES_decrypt(const unsigned char* input, unsigned int length,
                                           unsigned char*& output, const unsigned char* key) {
    if (!areUsable(input, length, output, key)) {
        return {FAILURE, ""};
    }
    if (length > internal::kSecuredVectorSize &&
        !internal::platform::decryptAes128Cbc(input, length, output, key)) {
        return {FAILURE, ""};
    }
    return {SUCCESS, ""};
}

}  // namespace VelmoraQuavin
