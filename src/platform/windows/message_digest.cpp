#include "platform/message_digest.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "platform/windows/cng_handles.h"

namespace VelmoraQuavin::internal::platform {
namespace {

struct HashDestroy {
    void operator()(void* hash) const noexcept { ::BCryptDestroyHash(hash); }
};
using Hash = std::unique_ptr<void, HashDestroy>;

}  // namespace

struct MessageDigest::State {
    CngProvider provider;
    Hash hash;  // destroyed before its provider
    std::size_t size;
};

MessageDigest::MessageDigest(HashAlgorithm algorithm) noexcept {
    CngProvider provider = openCngProvider(
        algorithm == HashAlgorithm::kSha256 ? BCRYPT_SHA256_ALGORITHM : BCRYPT_SHA384_ALGORITHM);
    BCRYPT_HASH_HANDLE handle = nullptr;
    if (provider == nullptr ||
        !BCRYPT_SUCCESS(::BCryptCreateHash(provider.get(), &handle, nullptr, 0, nullptr, 0, 0))) {
        return;
    }
    Hash hash(handle);
    state_.reset(new (std::nothrow)
                     State{std::move(provider), std::move(hash), digestSize(algorithm)});
}

MessageDigest::MessageDigest(MessageDigest&& other) noexcept = default;
MessageDigest& MessageDigest::operator=(MessageDigest&& other) noexcept = default;
MessageDigest::~MessageDigest() = default;

void MessageDigest::add(const void* bytes, std::size_t count) noexcept {
    const auto* next = static_cast<const unsigned char*>(bytes);
    while (state_ != nullptr && count != 0) {
        const auto step =
            static_cast<ULONG>(std::min<std::size_t>(count, std::numeric_limits<ULONG>::max()));
        if (!BCRYPT_SUCCESS(
                ::BCryptHashData(state_->hash.get(), const_cast<unsigned char*>(next), step, 0))) {
            state_.reset();
        }
        next += step;
        count -= step;
    }
}

bool MessageDigest::finish(unsigned char* digest) noexcept {
    return state_ != nullptr &&
           BCRYPT_SUCCESS(
               ::BCryptFinishHash(state_->hash.get(), digest, static_cast<ULONG>(state_->size), 0));
}

}  // namespace VelmoraQuavin::internal::platform
