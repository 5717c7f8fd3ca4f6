#include "support/secured_file.h"

#include <openssl/evp.h>

#include <memory>
#include <stdexcept>

namespace VelmoraQuavin::testing {
namespace {

constexpr std::size_t kBlock = 16;
// Any vector will do; a visible one eases reading dumps.
constexpr std::string_view kVector = "initial--vector-";
static_assert(kVector.size() == kBlock);

void require(int result) {
    if (result != 1) {
        throw std::runtime_error("OpenSSL refused to encrypt");
    }
}

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

std::string secured(std::string_view plain, const CryptoKey& key, BlockFilling filling) {
    const std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> context(
        EVP_CIPHER_CTX_new(), [](EVP_CIPHER_CTX* made) { EVP_CIPHER_CTX_free(made); });
    require(EVP_EncryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, key.data(),
                               bytesOf(kVector)));
    require(EVP_CIPHER_CTX_set_padding(context.get(), filling == BlockFilling::kPkcs7 ? 1 : 0));
    std::string text(kVector);
    text.resize(kBlock + plain.size() + kBlock);
    auto* const out = reinterpret_cast<unsigned char*>(text.data()) + kBlock;
    int written = 0;
    int last = 0;
    require(EVP_EncryptUpdate(context.get(), out, &written, bytesOf(plain),
                              static_cast<int>(plain.size())));
    require(EVP_EncryptFinal_ex(context.get(), out + written, &last));
    text.resize(kBlock + static_cast<std::size_t>(written + last));
    return text;
}

std::string filledWithSpaces(std::string text) {
    text.resize((text.size() + kBlock - 1) / kBlock * kBlock, ' ');
    return text;
}

}  // namespace VelmoraQuavin::testing
