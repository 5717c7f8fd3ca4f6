#include "platform/message_digest.h"

#include <openssl/evp.h>

#include <new>
#include <utility>

#include "platform/posix/openssl_context.h"

namespace VelmoraQuavin::internal::platform {
namespace {

struct DigestContextDelete {
    void operator()(EVP_MD_CTX* context) const noexcept { EVP_MD_CTX_free(context); }
};
using DigestContext = std::unique_ptr<EVP_MD_CTX, DigestContextDelete>;

}  // namespace

struct MessageDigest::State {
    DigestContext context;
};

MessageDigest::MessageDigest(HashAlgorithm algorithm) noexcept {
    const CryptoErrorMark mark;
    DigestContext context(EVP_MD_CTX_new());
    const EVP_MD* const type = algorithm == HashAlgorithm::kSha256 ? EVP_sha256() : EVP_sha384();
    if (context != nullptr && EVP_DigestInit_ex(context.get(), type, nullptr) == 1) {
        state_.reset(new (std::nothrow) State{std::move(context)});
    }
}

MessageDigest::MessageDigest(MessageDigest&& other) noexcept = default;
MessageDigest& MessageDigest::operator=(MessageDigest&& other) noexcept = default;
MessageDigest::~MessageDigest() = default;

void MessageDigest::add(const void* bytes, std::size_t count) noexcept {
    const CryptoErrorMark mark;
    if (state_ != nullptr && count != 0 &&
        EVP_DigestUpdate(state_->context.get(), bytes, count) != 1) {
        state_.reset();
    }
}

bool MessageDigest::finish(unsigned char* digest) noexcept {
    const CryptoErrorMark mark;
    return state_ != nullptr && EVP_DigestFinal_ex(state_->context.get(), digest, nullptr) == 1;
}

}  // namespace VelmoraQuavin::internal::platform
