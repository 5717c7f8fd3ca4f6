#include "package/signature/trusted_keys.h"

#include <optional>
#include <utility>

#include "quavin/status.h"

namespace VelmoraQuavin::internal {
namespace {

// Not destroyed with the process, which may load models while it exits.
union StoredKeys {
    constexpr StoredKeys() noexcept : keys() {}
    StoredKeys(const StoredKeys&) = delete;
    StoredKeys& operator=(const StoredKeys&) = delete;
    ~StoredKeys() {}  // NOLINT(modernize-use-equals-default): that would delete it

    SharedTrustedKeys keys;
};

StoredKeys stored;

}  // namespace

SharedTrustedKeys readTrustedKeys(const std::vector<String>& pems) {
    if (pems.empty()) {
        return nullptr;
    }
    auto read = std::make_shared<TrustedKeys>();
    for (const String& pem : pems) {
        std::string problem;
        std::optional<TrustedKey> key = readPublicKey(pem.view(), problem);
        if (!key.has_value()) {
            read->problem = "Trusted key " + std::to_string(read->keys.size() + 1) + ": " + problem;
            break;
        }
        read->keys.push_back(*std::move(key));
    }
    return read;
}

void setTrustedKeys(SharedTrustedKeys keys) noexcept {
    std::atomic_store(&stored.keys, std::move(keys));
}

SharedTrustedKeys trustedKeys() noexcept {
    return std::atomic_load(&stored.keys);
}

bool areKeysTrusted() noexcept {
    return trustedKeys() != nullptr;
}

void requireUsable(const TrustedKeys& keys) {
    if (!keys.problem.empty()) {
        throw InvalidArgumentsException(keys.problem);
    }
}

}  // namespace VelmoraQuavin::internal
