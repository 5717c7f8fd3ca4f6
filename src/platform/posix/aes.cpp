#include "platform/aes.h"

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>

#include "platform/posix/openssl_context.h"
#include "platform/secure_memory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// A multiple of the block size, small enough to stay in the L1 cache between decrypting and moving.
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
        const std::size_t step = std::min(count - done, kLargestCryptoStep);
        if (!update(context, output + done, ciphertext + done, step)) {
            return false;
        }
        done += step;
    }
    return true;
}

// Decrypts a chunk into scratch memory, where it cannot disturb the ciphertext, and copies it out.
class ChunkDecryptor {
public:
    explicit ChunkDecryptor(EVP_CIPHER_CTX* context) : context_(context) {}
    ChunkDecryptor(const ChunkDecryptor&) = delete;
    ChunkDecryptor& operator=(const ChunkDecryptor&) = delete;
    ~ChunkDecryptor() { wipeMemory(scratch_.data(), scratch_.size()); }

    bool decrypt(unsigned char* output, const unsigned char* ciphertext,
                 std::size_t count) noexcept {
        if (!update(context_, scratch_.data(), ciphertext, count)) {
            return false;
        }
        std::memcpy(output, scratch_.data(), count);
        return true;
    }

private:
    EVP_CIPHER_CTX* context_;
    std::array<unsigned char, kMoveChunk> scratch_;
};

// For plaintext that begins no later than its ciphertext: only bytes already read are overwritten.
bool decryptForwards(EVP_CIPHER_CTX* context, unsigned char* output,
                     const unsigned char* ciphertext, std::size_t count) noexcept {
    ChunkDecryptor chunks(context);
    for (std::size_t done = 0; done < count;) {
        const std::size_t step = std::min(count - done, kMoveChunk);
        if (!chunks.decrypt(output + done, ciphertext + done, step)) {
            return false;
        }
        done += step;
    }
    return true;
}

// For plaintext that begins inside its ciphertext: works from the end, with the block in front of
// each chunk as its initialisation vector.
bool decryptBackwards(EVP_CIPHER_CTX* context, unsigned char* output,
                      const unsigned char* ciphertext, std::size_t count) noexcept {
    ChunkDecryptor chunks(context);
    for (std::size_t left = count; left > 0;) {
        const std::size_t step = (left - 1) % kMoveChunk + 1;
        left -= step;
        const unsigned char* const vector = ciphertext + left - kAesBlockSize;
        if (EVP_DecryptInit_ex(context, nullptr, nullptr, nullptr, vector) != 1 ||
            !chunks.decrypt(output + left, ciphertext + left, step)) {
            return false;
        }
    }
    return true;
}

bool overlap(const unsigned char* left, std::size_t leftSize, const unsigned char* right,
             std::size_t rightSize) noexcept {
    const std::less<> before;
    return before(left, right + rightSize) && before(right, left + leftSize);
}

}  // namespace

bool decryptAes128Cbc(const unsigned char* input, std::size_t length, unsigned char* output,
                      const unsigned char* key) noexcept {
    const CryptoErrorMark mark;
    const unsigned char* const ciphertext = input + kAesBlockSize;
    const std::size_t count = length - kAesBlockSize;
    const CipherContext context(EVP_CIPHER_CTX_new());
    if (context == nullptr ||
        EVP_DecryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, key, input) != 1 ||
        EVP_CIPHER_CTX_set_padding(context.get(), 0) != 1) {
        return false;
    }
    bool decrypted = false;
    if (!overlap(input, length, output, count)) {
        decrypted = decryptApart(context.get(), output, ciphertext, count);
    } else if (!std::less<>()(ciphertext, output)) {
        decrypted = decryptForwards(context.get(), output, ciphertext, count);
    } else {
        decrypted = decryptBackwards(context.get(), output, ciphertext, count);
    }
    if (!decrypted) {
        wipeMemory(output, count);
    }
    return decrypted;
}

}  // namespace VelmoraQuavin::internal::platform
