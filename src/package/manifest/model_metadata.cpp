#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/diagnostics.h"
#include "package/json/json_access.h"
#include "package/json/json_problems.h"
#include "package/manifest/manifest_digest.h"
#include "package/manifest/manifest_document.h"
#include "package/manifest/manifest_path.h"
#include "package/manifest/manifest_target.h"
#include "package/manifest/metadata_access.h"
#include "package/path/package_path.h"
#include "package/signature/trusted_keys.h"
#include "package/source/sized_file.h"
#include "quavin/metadata.h"
#include "text/vocabulary.h"

namespace VelmoraQuavin {
namespace {

using internal::ManifestDigest;
using internal::ManifestFault;
using internal::ManifestParse;

// Reports why a manifest cannot be used. Always returns false, as the result of readDocument().
template <typename MakeReason>
bool unusable(const std::string& manifest, MakeReason makeReason) {
    internal::diagnose([&] { return "reading the manifest " + manifest + ": " + makeReason(); });
    return false;
}

// Describes the targets that a package has instead of the one needed.
std::string targetsOf(const internal::JsonValue& targets) {
    return targets.IsObject() ? R"("targets" has )" + internal::memberNames(targets)
                              : R"("targets" is )" + internal::jsonKind(targets);
}

std::string tooLarge(uint64 size) {
    return "it has " + std::to_string(size) + " bytes, and at most " +
           std::to_string(internal::kLargestManifest) + " are read";
}

std::string reasonOf(const ManifestParse& parse, std::string_view text,
                     const internal::JsonDocument& document) {
    switch (parse.fault) {
        case ManifestFault::kTooLarge:
            return tooLarge(text.size());
        case ManifestFault::kTooManyValues:
            return "it holds more than " + std::to_string(internal::kMostManifestValues) +
                   " values";
        case ManifestFault::kEmpty:
            return "it is empty";
        case ManifestFault::kNoJson:
            return internal::parseProblem(text, parse.offset, document.GetParseError());
        case ManifestFault::kZeroByte:
            return internal::textPosition(text, parse.offset) + ": a zero byte";
        default:
            return "it contains " + internal::jsonKind(document) + ", not an object";
    }
}

bool parse(const std::string& manifest, std::string_view text, internal::JsonDocument& document) {
    const ManifestParse parsed = internal::parseManifest(text, document);
    return parsed.fault == ManifestFault::kNone ||
           unusable(manifest, [&] { return reasonOf(parsed, text, document); });
}

// Null while nothing will be compared with it: the system's cryptography takes milliseconds to
// start.
std::shared_ptr<const ManifestDigest> digestOf(std::string_view name, std::string_view text) {
    if (!internal::areKeysTrusted()) {
        return nullptr;
    }
    auto digest = std::make_shared<ManifestDigest>();
    digest->name = internal::packagePath(name);
    internal::platform::Sha256Digest computed{};
    if (internal::platform::sha256(text.data(), text.size(), computed)) {
        digest->digest = computed;
    }
    return digest;
}

// Everything after the part that becomes the root directory.
std::string_view fileName(std::string_view path) {
    return path.substr(path.rfind(Filepath::Separator.view()) + 1);
}

// Returns whether the file exists and holds one JSON object.
bool readDocument(const Filepath& path, const std::string& manifest,
                  internal::JsonDocument& document, std::shared_ptr<const ManifestDigest>& digest) {
    std::string problem;
    std::optional<internal::SizedFile> file = internal::SizedFile::tryOpen(path, problem);
    if (!file.has_value()) {
        return unusable(manifest, [&problem] { return "it " + problem; });
    }
    if (file->size() > internal::kLargestManifest) {
        return unusable(manifest, [&file] { return tooLarge(file->size()); });
    }
    const std::unique_ptr<char[]> bytes(new char[file->size()]);
    if (!file->tryRead(bytes.get(), problem)) {
        return unusable(manifest, [&problem] { return "it " + problem; });
    }
    const std::string_view text(bytes.get(), file->size());
    digest = digestOf(fileName(String(path.c_str()).view()), text);
    return parse(manifest, text, document);
}

}  // namespace

ModelMetadata::ModelMetadata() = default;

ModelMetadata::ModelMetadata(const String& id, const String& sdkVersion, const String& description,
                             const String& name, int version, const String& author,
                             const Filepath& rootDir, const Targets& targets, const String& scripts)
    : id_(id),
      sdkVersion_(sdkVersion),
      description_(description),
      name_(name),
      version_(version),
      author_(author),
      rootDir_(rootDir),
      targets_(targets),
      scripts_(scripts) {}

QuavinStatus ModelMetadata::load(const Filepath& path) {
    try {
        const std::string manifest = internal::inQuotes(path.c_str());
        internal::JsonDocument document;
        std::shared_ptr<const ManifestDigest> digest;
        if (!readDocument(path, manifest, document, digest)) {
            throw ModelMetaDataException(String("Failed to open metadata file at ") + path.c_str());
        }
        rootDir_ = path.parent_path();
        memory_.reset();
        internal::MetadataAccess::readMembers(*this, document, manifest, std::move(digest));
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

QuavinStatus ModelMetadata::loadFromMemory(const void* manifest, uint64 size) {
    try {
        if (manifest == nullptr) {
            throw InvalidArgumentsException("There is no manifest to read");
        }
        const std::string name = "in memory";
        internal::JsonDocument document;
        std::string_view text(static_cast<const char*>(manifest), size);
        std::string copy;
        if (internal::areKeysTrusted() && size <= internal::kLargestManifest) {
            // The bytes may be shared with others, and what is hashed must be what is parsed.
            copy = text;
            text = copy;
        }
        if (!parse(name, text, document)) {
            throw ModelMetaDataException("The bytes in memory are not a manifest");
        }
        rootDir_ = Filepath();
        memory_.reset();
        internal::MetadataAccess::readMembers(*this, document, name,
                                              digestOf(internal::kManifestName, text));
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

void internal::MetadataAccess::readMembers(ModelMetadata& metadata, const JsonDocument& document,
                                           const std::string& manifest,
                                           std::shared_ptr<const ManifestDigest> digest) {
    metadata.manifest_.reset();
    // Whether nothing is left of what the object held before.
    bool isWhole = true;
    for (const auto& [key, member] :
         {std::pair("id", &metadata.id_), std::pair("name", &metadata.name_),
          std::pair("author", &metadata.author_), std::pair("description", &metadata.description_),
          std::pair("sdkVersion", &metadata.sdkVersion_)}) {
        isWhole &= readString(document, key, *member) || member->empty();
    }
    isWhole &= readInt(document, "version", metadata.version_) || metadata.version_ == 0;

    const JsonValue* const targets = findMember(document, "targets");
    if (targets == nullptr) {
        unusable(manifest, [&] { return "it has " + memberNames(document); });
        throw ModelMetaDataException("No target found in root of manifest file");
    }
    keepForDiagnostics(metadata.targetsAsWritten_, [&] { return targetsOf(*targets); });
    QuavinModelType found = QuavinModelType::Undefined;
    for (const auto& [key, type] : kEngines) {
        if (const JsonValue* const target = findMember(*targets, key.data())) {
            metadata.targets_.insert_or_assign(type, readTarget(*target));
            found = found | type;
        }
    }
    isWhole &=
        std::all_of(metadata.targets_.begin(), metadata.targets_.end(),
                    [found](const auto& target) { return (target.first & found) == target.first; });
    if (isWhole) {
        metadata.manifest_ = std::move(digest);
    }
}

void ModelComponent::setCryptoKey(const unsigned char* key) {
    encryption.setKey(key);
}

}  // namespace VelmoraQuavin
