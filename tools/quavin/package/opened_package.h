#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "package/signature/statement.h"
#include "quavin/client.h"
#include "quavin/network.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/opened_archive.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// A package to load: a directory, or an archive, which is read into memory and stays encrypted
/// there if it is. Nothing is written to the disk.
class OpenedPackage {
public:
    /// @param package a directory or an archive. Anything that is not a regular file is taken for a
    ///        directory; problem() tells if it is none.
    /// @param key sixteen bytes, for an encrypted archive and for secured files; or null.
    /// @throws ArchiveKeyException if the key of an archive is missing or wrong; Exception of
    ///         several classes for an archive that the library refuses or that has no manifest.
    OpenedPackage(const std::string& package, const unsigned char* key);

    /// Why a directory cannot be a package; empty if it can.
    std::string problem() const;
    /// The text of the manifest.
    /// @throws FileException if it cannot be read.
    WipedBytes manifestText() const;
    /// Reads the manifest, and sets the key on its components if there is one.
    VelmoraQuavin::QuavinStatus readManifest(VelmoraQuavin::ModelMetadata& metadata) const;

    /// The content of the signature's file; nothing if there is none.
    /// @throws SignatureException if it is larger than any signature; FileException if it cannot be
    ///         read.
    std::optional<WipedBytes> signature() const;
    /// The digests of all files but the signature's, and those that a statement leaves out.
    /// @throws Exception as digestsInDirectory() does.
    VelmoraQuavin::internal::SignedFiles digests(
        const VelmoraQuavin::internal::Statement& statement) const;

    /// Why a component cannot be read; empty if it can.
    std::string fileProblem(const VelmoraQuavin::ModelComponent& component) const;
    /// The size of a component that can be read.
    std::uint64_t fileSize(const VelmoraQuavin::ModelComponent& component) const;

    /// Describes the network.
    VelmoraQuavin::QuavinStatus describe(Descriptors& inputs, Descriptors& outputs) const;
    /// Loads the model.
    /// @throws Exception if that fails, with advice if the key may be the cause;
    ///         InvalidArgumentsException if a key is needed and there is none.
    std::shared_ptr<VelmoraQuavin::QuavinModel> load(
        const VelmoraQuavin::EngineOptions& options = {}) const;
    /// Whether secured files can be read and decrypted but do not contain a network: then the key
    /// is wrong or a file is damaged. Any other failure has nothing to do with the key.
    bool decryptsToNoNetwork(const VelmoraQuavin::ModelTarget& target) const;

private:
    // A component's bytes as they are stored in the package.
    WipedBytes storedContent(const VelmoraQuavin::ModelComponent& component) const;
    WipedBytes plainContent(const VelmoraQuavin::ModelComponent& component) const;
    std::string filePath(const VelmoraQuavin::ModelComponent& component) const;
    Metadata requireManifest() const;
    VelmoraQuavin::PackageKeys keys() const;

    std::string package_;
    const unsigned char* key_;
    std::optional<OpenedArchive> archive_;
};

}  // namespace quavin_tool
