#pragma once

/// @file
/// The content of a model package's manifest.

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "quavin/encryption.h"
#include "quavin/export.h"
#include "quavin/feature.h"
#include "quavin/files.h"
#include "quavin/status.h"
#include "quavin/text.h"

namespace VelmoraQuavin {

namespace internal {
class ComponentSource;
struct ManifestDigest;
struct MetadataAccess;
}  // namespace internal

/// Inference engines, as bits.
enum class QuavinModelType : std::uint64_t {
    Undefined = 0,        ///< No preference.
    CoreML = 1,           ///< "CoreML" in a manifest.
    WinML = 2,            ///< "WinML" in a manifest.
    Openvino = 4,         ///< "Openvino" in a manifest: the engine of this build.
    Tensorflow = 8,       ///< Never read from a manifest.
    TensorflowLite = 16,  ///< "TensorflowLite" in a manifest.
    MockML = 32,          ///< "MockML" in a manifest.
};

/// The bits set in either.
constexpr QuavinModelType operator|(QuavinModelType left, QuavinModelType right) noexcept {
    return static_cast<QuavinModelType>(static_cast<std::uint64_t>(left) |
                                        static_cast<std::uint64_t>(right));
}
/// The bits set in both.
constexpr QuavinModelType operator&(QuavinModelType left, QuavinModelType right) noexcept {
    return static_cast<QuavinModelType>(static_cast<std::uint64_t>(left) &
                                        static_cast<std::uint64_t>(right));
}

/// The display name of an engine.
/// @throws std::out_of_range "invalid unordered_map<K, T> key" for QuavinModelType::Tensorflow, a
///         combination of bits or any other value without a name.
QUAVIN_API String ModelTypeToName(QuavinModelType type);

/// The engine keys in a manifest's "targets".
struct QUAVIN_API EngineKey {
    static const String WinML;           ///< "WinML".
    static const String CoreML;          ///< "CoreML".
    static const String Tensorflow;      ///< "Tensorflow"; the reader never looks for it.
    static const String Openvino;        ///< "Openvino".
    static const String TensorflowLite;  ///< "TensorflowLite".
    static const String MockML;          ///< "MockML".
};

/// The kinds of component: the possible values of a component's "name".
struct QUAVIN_API ComponentKind {
    static const String File;          ///< "file": a plain file.
    static const String MemoryStream;  ///< "memory_stream": a buffer in memory.
    static const String SecuredFile;   ///< "secured_file": an encrypted file.
    static const String SecuredTar;    ///< "secured_tar": an encrypted archive.
};

/// One file or buffer of a model. A value type; copies include the key.
struct QUAVIN_API ModelComponent {
    String name;            ///< The kind; see ComponentKind.
    String path;            ///< Relative to the package.
    Encryption encryption;  ///< The key of a secured component.

    /// Copies the sixteen bytes of the key, which is never part of the manifest.
    /// @throws InvalidArgumentsException for a null pointer.
    void setCryptoKey(const unsigned char* key);
};

/// A model as one engine sees it. A value type.
struct ModelTarget {
    std::vector<ModelComponent> components;       ///< In the manifest's order.
    std::vector<String> inputNames;               ///< The name of each of #inputs.
    std::vector<String> outputNames;              ///< The name of each of #outputs.
    std::vector<ModelFeatureDescriptor> inputs;   ///< In the manifest's order.
    std::vector<ModelFeatureDescriptor> outputs;  ///< In the manifest's order.
};

/// The content of a manifest: the identity of a model, and a target for each engine it supports.
///
/// A value type; copies include the components' keys. Fill it on one thread, before sharing the
/// model that holds it.
///
/// @code
/// Filepath manifest(directory);
/// manifest.append(Filepath("manifest.json"));
/// auto metadata = std::make_shared<ModelMetadata>();
/// if (metadata->load(manifest).ok()) {
///     ModelTarget& target = metadata->getTargets().at(QuavinModelType::Openvino);
///     target.components[0].setCryptoKey(key);
/// }
/// @endcode
class QUAVIN_API ModelMetadata {
public:
    /// The targets by engine.
    using Targets = std::unordered_map<QuavinModelType, ModelTarget>;

    /// Empty strings, version 0, no targets.
    ModelMetadata();
    /// Stores everything as given.
    ModelMetadata(const String& id, const String& sdkVersion, const String& description,
                  const String& name, int version, const String& author, const Filepath& rootDir,
                  const Targets& targets, const String& scripts);

    /// Reads a manifest into this object.
    ///
    /// Fields that the manifest omits, or gives with the wrong JSON type, keep their values. A
    /// target for an engine that it names replaces the existing one, including any keys set on it;
    /// targets for other engines stay.
    ///
    /// While keys are trusted (QuavinConfig::SetTrustedKeys), the digest of the manifest is
    /// remembered, for the loads that compare it with the package's signature. They refuse an
    /// object that still holds a field or a target from before this call.
    ///
    /// @param path the manifest itself. Everything before the last backslash becomes the root
    ///        directory, so join paths with Filepath::append(), not with "/".
    /// @return SUCCESS, even if "targets" names no engine; MODEL_METADATA_ERROR if the file cannot
    ///         be read or is not a JSON object ("Failed to open metadata file at " and the path) or
    ///         has no "targets" ("No target found in root of manifest file"); FAILURE for a path
    ///         that is not UTF-8 ("bad conversion"), or if memory runs out. Whatever was read
    ///         before a failure stays. Never throws.
    QuavinStatus load(const Filepath& path);
    /// As above, for a manifest in memory. The root directory becomes empty: set it before the
    /// model is loaded, since components would be looked for in the root of the file system.
    /// @param manifest the manifest's bytes; not needed after the call.
    /// @param size bytes at `manifest`.
    /// @return as above; INVALID_ARGUMENTS for a null pointer. Instead of the description with the
    ///         path, there is "The bytes in memory are not a manifest".
    QuavinStatus loadFromMemory(const void* manifest, uint64 size);

    String getId() const { return id_; }                    ///< A copy of "id".
    String getName() const { return name_; }                ///< A copy of "name".
    String getAuthor() const { return author_; }            ///< A copy of "author".
    String getDescription() const { return description_; }  ///< A copy of "description".
    String getSdkVersion() const { return sdkVersion_; }    ///< A copy of "sdkVersion".
    String getScripts() const { return scripts_; }          ///< A copy of what setScripts() stored.
    int getVersion() const { return version_; }             ///< "version".
    Filepath getRootDir() const { return rootDir_; }        ///< A copy of the manifest's directory.
    Targets& getTargets() { return targets_; }  ///< The targets, for reading and writing.
    /// The targets.
    const Targets& getTargets() const { return targets_; }

    void setId(const String& id) { id_ = id; }                  ///< Replaces "id".
    void setName(const String& name) { name_ = name; }          ///< Replaces "name".
    void setAuthor(const String& author) { author_ = author; }  ///< Replaces "author".
    /// Replaces "description".
    void setDescription(const String& description) { description_ = description; }
    /// Replaces "sdkVersion".
    void setSdkVersion(const String& sdkVersion) { sdkVersion_ = sdkVersion; }
    void setScripts(const String& scripts) { scripts_ = scripts; }    ///< Replaces the scripts.
    void setVersion(int version) { version_ = version; }              ///< Replaces "version".
    void setRootDir(const Filepath& rootDir) { rootDir_ = rootDir; }  ///< Replaces the directory.
    void setTargets(const Targets& targets) { targets_ = targets; }   ///< Replaces all targets.

private:
    friend struct internal::MetadataAccess;

    String id_;
    String sdkVersion_;
    String description_;
    String name_;
    std::int32_t version_ = 0;
    String author_;
    Filepath rootDir_;
    Targets targets_;
    String scripts_;
    // Set for a package in memory, and expired once its first load is over.
    std::optional<std::weak_ptr<const internal::ComponentSource>> memory_;
    // Used only by diagnostics: describes the "targets" of the last manifest.
    String targetsAsWritten_;
    // Set while keys are trusted, if everything read comes from this manifest.
    std::shared_ptr<const internal::ManifestDigest> manifest_;
};

}  // namespace VelmoraQuavin
