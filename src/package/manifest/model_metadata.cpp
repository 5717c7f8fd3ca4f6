#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/diagnostics.h"
#include "package/manifest/json_access.h"
#include "package/manifest/json_problems.h"
#include "package/manifest/manifest_document.h"
#include "package/manifest/manifest_target.h"
#include "package/manifest/metadata_access.h"
#include "package/source/sized_file.h"
#include "quavin/metadata.h"
#include "text/vocabulary.h"

namespace VelmoraQuavin {
namespace {

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

// Returns whether the file exists and holds one JSON object.
bool readDocument(const Filepath& path, const std::string& manifest,
                  internal::JsonDocument& document) {
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
    return parse(manifest, {bytes.get(), file->size()}, document);
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
        if (!readDocument(path, manifest, document)) {
            throw ModelMetaDataException(String("Failed to open metadata file at ") + path.c_str());
        }
        rootDir_ = path.parent_path();
        memory_.reset();
        internal::MetadataAccess::readMembers(*this, document, manifest);
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
        if (!parse(name, {static_cast<const char*>(manifest), size}, document)) {
            throw ModelMetaDataException("The bytes in memory are not a manifest");
        }
        rootDir_ = Filepath();
        memory_.reset();
        internal::MetadataAccess::readMembers(*this, document, name);
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

void internal::MetadataAccess::readMembers(ModelMetadata& metadata, const JsonDocument& document,
                                           const std::string& manifest) {
    readString(document, "id", metadata.id_);
    readString(document, "name", metadata.name_);
    readString(document, "author", metadata.author_);
    readString(document, "description", metadata.description_);
    readString(document, "sdkVersion", metadata.sdkVersion_);
    readInt(document, "version", metadata.version_);

    const JsonValue* const targets = findMember(document, "targets");
    if (targets == nullptr) {
        unusable(manifest, [&] { return "it has " + memberNames(document); });
        throw ModelMetaDataException("No target found in root of manifest file");
    }
    keepForDiagnostics(metadata.targetsAsWritten_, [&] { return targetsOf(*targets); });
    for (const auto& [key, type] : kEngines) {
        if (const JsonValue* const target = findMember(*targets, key.data())) {
            metadata.targets_.insert_or_assign(type, readTarget(*target));
        }
    }
}

void ModelComponent::setCryptoKey(const unsigned char* key) {
    encryption.setKey(key);
}

}  // namespace VelmoraQuavin
