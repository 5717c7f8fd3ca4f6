#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <tuple>

#include "core/secure_wipe.h"
#include "engine/cache/cache_seal.h"
#include "platform/aes.h"
#include "platform/aes_gcm.h"
#include "platform/hkdf.h"

namespace VelmoraQuavin::internal {
namespace {

// Sets this use of the package's keys apart from any other.
constexpr std::string_view kPurpose = "quavin compiled network";

static_assert(std::tuple_size_v<SealValue> == platform::kGcmNonceSize + platform::kGcmTagSize);

// The key for one entry.
class EntryKey {
public:
    EntryKey(const std::vector<unsigned char>& packageKeys, const EntryName& name) {
        const std::string salt = name.fileName();
        isDerived_ = platform::deriveHkdfSha256(packageKeys.data(), packageKeys.size(), salt,
                                                kPurpose, bytes_.data(), bytes_.size());
    }
    EntryKey(const EntryKey&) = delete;
    EntryKey& operator=(const EntryKey&) = delete;
    ~EntryKey() { secureWipe(bytes_.data(), bytes_.size()); }

    explicit operator bool() const { return isDerived_; }
    const unsigned char* data() const { return bytes_.data(); }

private:
    std::array<unsigned char, platform::kGcmKeySize> bytes_{};
    bool isDerived_ = false;
};

// The seal is the nonce, then the tag.
class SecretSeal : public CacheSeal {
public:
    explicit SecretSeal(const std::vector<const Encryption*>& keys) {
        keys_.reserve(keys.size() * platform::kAesKeySize);  // growing would leave copies behind
        for (const Encryption* key : keys) {
            keys_.insert(keys_.end(), key->getKey(), key->getKey() + platform::kAesKeySize);
        }
    }
    SecretSeal(const SecretSeal&) = delete;
    SecretSeal& operator=(const SecretSeal&) = delete;
    ~SecretSeal() override { secureWipe(keys_.data(), keys_.size()); }

    SealKind kind() const noexcept override { return SealKind::kSecret; }

    bool close(const EntryName& name, const HeaderStart& start, unsigned char* content,
               std::size_t size, SealValue& value) const override {
        const EntryKey key(keys_, name);
        platform::GcmSeal seal{};
        if (!key || !platform::encryptAes256Gcm(key.data(), start.data(), start.size(), content,
                                                size, seal)) {
            return false;
        }
        std::copy(seal.tag.begin(), seal.tag.end(),
                  std::copy(seal.nonce.begin(), seal.nonce.end(), value.begin()));
        return true;
    }

    bool open(const EntryName& name, const HeaderStart& start, unsigned char* content,
              std::size_t size, const SealValue& value) const override {
        const EntryKey key(keys_, name);
        platform::GcmSeal seal{};
        std::copy_n(value.begin(), seal.nonce.size(), seal.nonce.begin());
        std::copy_n(value.begin() + seal.nonce.size(), seal.tag.size(), seal.tag.begin());
        return key && platform::decryptAes256Gcm(key.data(), start.data(), start.size(), content,
                                                 size, seal);
    }

private:
    std::vector<unsigned char> keys_;
};

}  // namespace

bool canSealSecrets() noexcept {
    return true;
}

std::unique_ptr<CacheSeal> makeSecretSeal(const std::vector<const Encryption*>& keys) {
    return keys.empty() ? nullptr : std::make_unique<SecretSeal>(keys);
}

}  // namespace VelmoraQuavin::internal
