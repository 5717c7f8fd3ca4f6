#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/diagnostics.h"
#include "package/json_access.h"
#include "package/json_problems.h"
#include "package/manifest_document.h"
#include "package/manifest_target.h"
#include "package/sized_file.h"
#include "quavin/metadata.h"

namespace VelmoraQuavin {
namespace {

using internal::ManifestFault;
using internal::ManifestParse;

// The engines in the order in which a manifest's targets are read. Tensorflow has a key but is
// not read.
struct ReadEngine {
    const String& key;
    QuavinModelType type;
};
const std::array<ReadEngine, 5>& readEngines() {
    static const std::array<ReadEngine, 5> engines = {{
        {EngineKey::WinML, QuavinModelType::WinML},
        {EngineKey::CoreML, QuavinModelType::CoreML},
        {EngineKey::Openvino, QuavinModelType::Openvino},
        {EngineKey::TensorflowLite, QuavinModelType::TensorflowLite},
        {EngineKey::MockML, QuavinModelType::MockML},
    }};
    return engines;
}

// Reports why a manifest cannot be used. Always false, as the answer of readDocument().
template <typename MakeReason>
bool unusable(const Filepath& path, MakeReason makeReason) {
    internal::diagnose([&] {
        return "reading the manifest " + internal::inQuotes(path.c_str()) + ": " + makeReason();
    });
    return false;
}

// What a package offers instead of the target that was looked for.
std::string targetsOf(const internal::JsonValue& targets) {
    return targets.IsObject() ? R"("targets" has )" + internal::memberNames(targets)
                              : R"("targets" is )" + internal::jsonKind(targets);
}

std::string reasonOf(const ManifestParse& parse, std::string_view text,
                     const internal::JsonDocument& document) {
    switch (parse.fault) {
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
            return "it holds " + internal::jsonKind(document) + " and no object";
    }
}

// Whether the file is there and holds one JSON object.
bool readDocument(const Filepath& path, internal::JsonDocument& document) {
    std::string problem;
    std::optional<internal::SizedFile> file = internal::SizedFile::tryOpen(path, problem);
    if (!file.has_value()) {
        return unusable(path, [&problem] { return "it " + problem; });
    }
    if (file->size() > internal::kLargestManifest) {
        return unusable(path, [&file] {
            return "it has " + std::to_string(file->size()) + " bytes, and at most " +
                   std::to_string(internal::kLargestManifest) + " are read";
        });
    }
    const std::unique_ptr<char[]> bytes(new char[file->size()]);
    if (!file->tryRead(bytes.get(), problem)) {
        return unusable(path, [&problem] { return "it " + problem; });
    }
    const std::string_view text(bytes.get(), file->size());
    const ManifestParse parse = internal::parseManifest(text, document);
    return parse.fault == ManifestFault::kNone ||
           unusable(path, [&] { return reasonOf(parse, text, document); });
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
        readManifest(path);
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

void ModelMetadata::readManifest(const Filepath& path) {
    internal::JsonDocument document;
    if (!readDocument(path, document)) {
        throw ModelMetaDataException(String("Failed to open metadata file at ") + path.c_str());
    }
    rootDir_ = path.parent_path();
    internal::readString(document, "id", id_);
    internal::readString(document, "name", name_);
    internal::readString(document, "author", author_);
    internal::readString(document, "description", description_);
    internal::readString(document, "sdkVersion", sdkVersion_);
    internal::readInt(document, "version", version_);

    const internal::JsonValue* targets = internal::findMember(document, "targets");
    if (targets == nullptr) {
        unusable(path, [&] { return "it has " + internal::memberNames(document); });
        throw ModelMetaDataException("No target found in root of manifest file");
    }
    internal::keepForDiagnostics(targetsAsWritten_, [&] { return targetsOf(*targets); });
    for (const ReadEngine& engine : readEngines()) {
        const internal::JsonValue* target =
            internal::findMember(*targets, engine.key.str().c_str());
        if (target != nullptr) {
            targets_.insert_or_assign(engine.type, internal::readTarget(*target));
        }
    }
}

}  // namespace VelmoraQuavin
