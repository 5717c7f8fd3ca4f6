#include "package/source/signed_source.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "core/diagnostics.h"
#include "package/path/package_path.h"
#include "package/signature/verify_signature.h"
#include "package/source/network_components.h"
#include "platform/large_pages.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {
namespace {

using platform::Sha256Digest;

// Small enough to be hashed while it is still in the processor's cache.
constexpr uint64 kStep = uint64{256} << 10;

// Without a digest, the system's cryptography failed.
void requireSame(const std::string& name, const std::optional<Sha256Digest>& digest,
                 const Sha256Digest& expected) {
    if (!digest.has_value()) {
        throw SignatureException("The digest of " + inQuotes(name) +
                                 " cannot be computed: the system's cryptography fails");
    }
    if (*digest != expected) {
        throw SignatureException("The digest of " + inQuotes(name) +
                                 " is not the one that was signed");
    }
}

class SignedBytes : public StoredBytes {
public:
    SignedBytes(std::unique_ptr<StoredBytes> bytes, std::string name, const Sha256Digest& expected)
        : bytes_(std::move(bytes)), name_(std::move(name)), expected_(expected) {}

    uint64 size() const override { return bytes_->size(); }
    void read(char* buffer, uint64 count) override {
        platform::preferLargePages(buffer, count);  // no step is large enough to ask for them
        while (count != 0) {
            const uint64 step = std::min(count, kStep);
            bytes_->read(buffer, step);
            hash_.add(buffer, step);
            read_ += step;
            buffer += step;
            count -= step;
        }
        if (read_ == size()) {
            compare();
        }
    }
    // Files could change after they were compared.
    std::optional<MappedBytes> map() override {
        if (!isInMemory()) {
            return std::nullopt;
        }
        std::optional<MappedBytes> mapped = bytes_->map();
        if (mapped.has_value()) {
            hash_.add(mapped->data.get(), mapped->size);
            compare();
        }
        return mapped;
    }
    bool isInMemory() const noexcept override { return bytes_->isInMemory(); }

private:
    void compare() {
        Sha256Digest digest{};
        const bool computed = hash_.finish(digest.data());
        requireSame(name_, computed ? std::optional(digest) : std::nullopt, expected_);
    }

    const std::unique_ptr<StoredBytes> bytes_;
    const std::string name_;
    const Sha256Digest expected_;
    platform::MessageDigest hash_{platform::HashAlgorithm::kSha256};
    uint64 read_ = 0;
};

SignedFiles verifySignatureOf(const ComponentSource& source, const TrustedKeys& trusted) {
    requireUsable(trusted);
    if (!source.contains(kSignatureName)) {
        throw SignatureException("The package has no signature: " + std::string(kSignatureName) +
                                 " is missing");
    }
    const std::unique_ptr<StoredBytes> signature = source.open(
        {source.resolve(kSignatureName), ComponentKind::File, kSignatureName, Encryption()});
    requireSignatureSize(signature->size());
    std::string bundle(signature->size(), '\0');
    signature->read(bundle.data(), bundle.size());
    return verifySignature(bundle, trusted.keys);
}

// The digest that was signed.
const Sha256Digest& requireCovered(const SignedFiles& files, const std::string& name) {
    const auto file = files.find(name);
    if (file == files.end()) {
        throw SignatureException("The signature does not cover " + inQuotes(name));
    }
    return file->second;
}

}  // namespace

SignedSource::SignedSource(std::shared_ptr<const ComponentSource> source,
                           const ManifestDigest* manifest, SharedTrustedKeys keys)
    : source_(std::move(source)),
      keys_(std::move(keys)),
      files_(verifySignatureOf(*source_, *keys_)) {
    if (manifest == nullptr) {
        throw SignatureException(
            "The metadata was not read from one manifest after trusted keys were set");
    }
    requireSame(manifest->name, manifest->digest, requireCovered(files_, manifest->name));
}

String SignedSource::name() const {
    return source_->name();
}

String SignedSource::resolve(const String& path) const {
    return source_->resolve(path);
}

bool SignedSource::contains(const String& path) const {
    return source_->contains(path);
}

std::unique_ptr<StoredBytes> SignedSource::open(const NetworkComponentEntry& component) const {
    const std::string name = packagePath(component.path.view());
    const Sha256Digest& expected = requireCovered(files_, name);
    if (!source_->contains(component.path)) {
        throw SignatureException("The signature covers " + inQuotes(name) +
                                 ", which the package lacks");
    }
    return std::make_unique<SignedBytes>(source_->open(component), name, expected);
}

const SealedPackage* SignedSource::sealed() const noexcept {
    return source_->sealed();
}

}  // namespace VelmoraQuavin::internal
