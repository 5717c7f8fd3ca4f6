#include "tools/quavin/package/archive_content.h"

#include <optional>
#include <string_view>

#include "package/archive/tar_entry_path.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::internal::TarEntry;
using VelmoraQuavin::internal::TarEntryPath;
using VelmoraQuavin::internal::TarReader;

// A name as unpacking interprets it, with "/" between its parts.
std::string joinedName(const TarEntry& entry) {
    const TarEntryPath path = VelmoraQuavin::internal::parseTarEntryPath(entry.name);
    if (!path.refusal.empty()) {
        throw VelmoraQuavin::InvalidArgumentsException(
            "Archive entry " + VelmoraQuavin::internal::quotedTarName(entry.name) + ": " +
            path.refusal + ", so the archive cannot be unpacked");
    }
    std::string joined;
    for (const std::string& name : path.names) {
        joined += (joined.empty() ? "" : "/") + name;
    }
    return joined;
}

std::optional<std::string> placeOfManifest(const ArchiveContent& content, const std::string& root) {
    if (content.files.count(root + kManifestName) != 0) {
        return root;
    }
    for (const auto& [name, entry] : content.files) {
        const std::size_t separator = name.find('/');
        const std::size_t length = separator == std::string::npos ? 0 : separator + 1;
        if (name.substr(length) == kManifestName) {
            return name.substr(0, length);
        }
    }
    return std::nullopt;
}

}  // namespace

bool isArchive(const WipedBytes& bytes) {
    return bytes.size() >= VelmoraQuavin::internal::kTarBlockSize &&
           tarChecksumMatches(VelmoraQuavin::internal::TarHeader(bytes.data()));
}

ArchiveContent readArchive(const WipedBytes& archive, const std::string& path) {
    ArchiveContent content;
    std::optional<std::string> root;
    TarReader reader(archive.data(), archive.size());
    for (TarEntry entry; reader.next(entry);) {
        const std::string name = joinedName(entry);
        if (entry.kind == TarEntry::Kind::kFile) {
            content.files[name] = entry;  // of entries with the same name, the last counts
        } else if (!root.has_value()) {
            root = name.empty() ? "" : name + "/";
        }
    }
    const std::optional<std::string> place = placeOfManifest(content, root.value_or(""));
    if (!place.has_value()) {
        throw VelmoraQuavin::ModelMetaDataException(path + " contains no manifest.json");
    }
    content.package = *place;
    return content;
}

}  // namespace quavin_tool
