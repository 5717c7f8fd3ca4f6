#include <rapidjson/memorystream.h>

#include <array>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "package/json_access.h"
#include "package/manifest_target.h"
#include "package/sized_file.h"
#include "quavin/metadata.h"

namespace VelmoraQuavin {
namespace {

// Editors put it there; the JSON library would also take a part of it.
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kLeadingBlanks = " \t\r\n";

// Far more than any manifest has; a parsed document takes some thirty times its size in memory.
constexpr uint64 kLargestManifest = uint64{16} << 20;

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

// Whether the file is there and holds one JSON object.
bool parseManifest(const Filepath& path, internal::JsonDocument& document) {
    std::optional<internal::SizedFile> file = internal::SizedFile::tryOpen(path);
    if (!file.has_value() || file->size() > kLargestManifest) {
        return false;
    }
    const std::unique_ptr<char[]> bytes(new char[file->size()]);
    file->read(bytes.get());
    std::string_view text(bytes.get(), file->size());
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        text.remove_prefix(kByteOrderMark.size());
    }
    const std::size_t begin = text.find_first_not_of(kLeadingBlanks);
    if (begin == std::string_view::npos) {
        return false;
    }
    text.remove_prefix(begin);
    rapidjson::MemoryStream stream(text.data(), text.size());
    // Iterative, so that nesting costs memory and not the thread's stack.
    document.ParseStream<rapidjson::kParseIterativeFlag, rapidjson::UTF8<>>(stream);
    // The parser also stops at a zero byte.
    const bool whole = stream.Tell() == text.size();
    return !document.HasParseError() && whole && document.IsObject();
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
    if (!parseManifest(path, document)) {
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
        throw ModelMetaDataException("No target found in root of manifest file");
    }
    for (const ReadEngine& engine : readEngines()) {
        const internal::JsonValue* target =
            internal::findMember(*targets, engine.key.str().c_str());
        if (target != nullptr) {
            targets_.insert_or_assign(engine.type, internal::readTarget(*target));
        }
    }
}

}  // namespace VelmoraQuavin
