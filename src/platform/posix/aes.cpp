#include "platform/aes.h"

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "platform/secure_memory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

struct ContextDelete {
    void operator()(EVP_CIPHER_CTX* context) const noexcept { EVP_CIPHER_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_CIPHER_CTX, ContextDelete>;

// The crypto library counts bytes in an int.
constexpr std::size_t kLargestUpdate = std::size_t{1} << 30;
// Small enough to stay in the first-level cache between decrypting and moving.
constexpr std::size_t kMoveChunk = 8192;

bool update(EVP_CIPHER_CTX* context, unsigned char* output, const unsigned char* input,
            std::size_t count) noexcept {
    int written = 0;
    return EVP_DecryptUpdate(context, output, &written, input, static_cast<int>(count)) == 1 &&
           static_cast<std::size_t>(written) == count;
}

bool decryptApart(EVP_CIPHER_CTX* context, unsigned char* output, const unsigned char* ciphertext,
                  std::size_t count) noexcept {
    for (std::size_t done = 0; done < count;) {
        const std::size_t step = std::min(count - done, kLargestUpdate);
        if (!update(context, output + done, ciphertext + done, step)) {
            return false;
        }
        done += step;
    }
    return true;
}

// The plaintext begins one block before its ciphertext, an overlap that the crypto library refuses:
// it is decrypted in place a chunk at a time, and each chunk moved down while it is in the cache.
bool decryptInPlace(EVP_CIPHER_CTX* context, unsigned char* buffer, std::size_t count) noexcept {
    for (std::size_t done = 0; done < count;) {
        const std::size_t step = std::min(count - done, kMoveChunk);
        unsigned char* const ciphertext = buffer + kAesBlockSize + done;
        if (!update(context, ciphertext, ciphertext, step)) {
            return false;
        }
        std::memmove(buffer + done, ciphertext, step);
        done += step;
    }
    return true;
}

}  // namespace

bool decryptAes128Cbc(const unsigned char* input, std::size_t length, unsigned char* output,
                      const unsigned char* key) noexcept {
    const std::size_t count = length - kAesBlockSize;
    const Context context(EVP_CIPHER_CTX_new());
    if (context == nullptr ||
        EVP_DecryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, key, input) != 1 ||
        EVP_CIPHER_CTX_set_padding(context.get(), 0) != 1) {
        return false;
    }
    if (input == output) {
        if (decryptInPlace(context.get(), output, count)) {
            // The last block still holds what was moved out of it.
            wipeMemory(output + count, kAesBlockSize);
            return true;
        }
        wipeMemory(output, length);
        return false;
    }
    if (decryptApart(context.get(), output, input + kAesBlockSize, count)) {
        return true;
    }
    wipeMemory(output, count);
    return false;
}

}  // namespace VelmoraQuavin::internal::platform
