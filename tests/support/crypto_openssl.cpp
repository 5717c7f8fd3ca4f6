#include <openssl/evp.h>

#include <memory>
#include <stdexcept>

#include "support/crypto.h"

namespace VelmoraQuavin::testing {

std::vector<unsigned char> runAes(AesMode mode, AesDirection direction, const unsigned char* key,
                                  const unsigned char* vector, const unsigned char* input,
                                  std::size_t count) {
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(
        EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    const EVP_CIPHER* const cipher = mode == AesMode::kCbc ? EVP_aes_128_cbc() : EVP_aes_128_ecb();
    std::vector<unsigned char> output(count + 16);
    int written = 0;
    int last = 0;
    if (EVP_CipherInit_ex(context.get(), cipher, nullptr, key, vector,
                          direction == AesDirection::kEncrypt ? 1 : 0) != 1 ||
        EVP_CIPHER_CTX_set_padding(context.get(), 0) != 1 ||
        EVP_CipherUpdate(context.get(), output.data(), &written, input, static_cast<int>(count)) !=
            1 ||
        EVP_CipherFinal_ex(context.get(), output.data() + written, &last) != 1) {
        throw std::runtime_error("OpenSSL refused");
    }
    output.resize(static_cast<std::size_t>(written) + static_cast<std::size_t>(last));
    return output;
}

std::array<unsigned char, 32> sha256(std::string_view content) {
    std::array<unsigned char, 32> digest{};
    if (EVP_Digest(content.data(), content.size(), digest.data(), nullptr, EVP_sha256(), nullptr) !=
        1) {
        throw std::runtime_error("OpenSSL refused to compute a digest");
    }
    return digest;
}

}  // namespace VelmoraQuavin::testing
