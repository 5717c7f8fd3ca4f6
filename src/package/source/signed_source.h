#pragma once

#include <memory>

#include "package/manifest/manifest_digest.h"
#include "package/signature/statement.h"
#include "package/signature/trusted_keys.h"
#include "package/source/component_source.h"

namespace VelmoraQuavin::internal {

/// A package whose signature has been verified. Components are compared with it while they are
/// read, as they are stored, so that what is used is what was signed.
class SignedSource : public ComponentSource {
public:
    /// Verifies the package's signature, then its manifest.
    /// @param source the package.
    /// @param manifest what was read as its manifest; null if that is not known.
    /// @param keys those whose signatures count; not null.
    /// @throws InvalidArgumentsException if a trusted key cannot be used.
    /// @throws SignatureException if there is no signature, or not one that covers the manifest.
    /// @throws FileException if the signature cannot be read.
    SignedSource(std::shared_ptr<const ComponentSource> source, const ManifestDigest* manifest,
                 SharedTrustedKeys keys);

    String name() const override;
    String resolve(const String& path) const override;
    bool contains(const String& path) const override;
    /// @throws SignatureException if the signature does not cover the component, or the package
    ///         lacks it. What is opened throws it too, when the last byte has been read or mapped,
    ///         if the component is not what was signed.
    std::unique_ptr<StoredBytes> open(const NetworkComponentEntry& component) const override;
    const SealedPackage* sealed() const noexcept override;
    SharedTrustedKeys verifiedBy() const noexcept override { return keys_; }

private:
    const std::shared_ptr<const ComponentSource> source_;
    const SharedTrustedKeys keys_;
    const SignedFiles files_;
};

}  // namespace VelmoraQuavin::internal
