#include "inspected_package.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include "files.h"
#include "package/tar_entry_path.h"
#include "package/tar_reader.h"
#include "temporary_directory.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;
using VelmoraQuavin::ModelComponent;
using VelmoraQuavin::internal::TarEntry;
using VelmoraQuavin::internal::TarEntryPath;
using VelmoraQuavin::internal::TarReader;

// A name as unpacking takes it, "/" between its parts.
std::string joinedName(const TarEntry& entry) {
    const TarEntryPath path = VelmoraQuavin::internal::parseTarEntryPath(entry.name);
    if (!path.refusal.empty()) {
        throw VelmoraQuavin::InvalidArgumentsException(
            "Archive entry " + VelmoraQuavin::internal::quotedTarName(entry.name) + ": " +
            path.refusal + ", so that unpacking refuses the archive");
    }
    std::string joined;
    for (const std::string& name : path.names) {
        joined += (joined.empty() ? "" : "/") + name;
    }
    return joined;
}

// Nothing tells an encrypted archive from any other bytes.
void requireArchive(const Bytes& archive, const std::string& path) {
    using VelmoraQuavin::internal::kTarBlockSize;
    if (archive.size() < kTarBlockSize ||
        !tarChecksumMatches(VelmoraQuavin::internal::TarHeader(archive.data()))) {
        throw VelmoraQuavin::Exception(
            path +
                " is no tar archive; an encrypted one shows nothing before it is unpacked with "
                "its key",
            VelmoraQuavin::TAR_CHECKSUM_MISMATCH);
    }
}

// The files of an archive by their names, and the directory that unpacking calls its root.
struct Content {
    std::map<std::string, TarEntry> files;
    std::string root;
};

Content readContent(const Bytes& archive) {
    Content content;
    bool hasRoot = false;
    TarReader reader(archive.data(), archive.size());
    for (TarEntry entry; reader.next(entry);) {
        if (entry.kind == TarEntry::Kind::kFile) {
            content.files[joinedName(entry)] = entry;  // the last of a name counts
            continue;
        }
        const std::string directory = joinedName(entry);
        if (!hasRoot) {
            hasRoot = true;
            content.root = directory.empty() ? "" : directory + "/";
        }
    }
    return content;
}

// The part before "manifest.json", which stands in the root, or else at most one directory deep.
std::optional<std::string> placeOfManifest(const Content& content) {
    constexpr std::string_view kManifest = "manifest.json";
    if (content.files.count(content.root + std::string(kManifest)) != 0) {
        return content.root;
    }
    for (const auto& [name, entry] : content.files) {
        const std::size_t separator = name.find('/');
        const std::size_t length = separator == std::string::npos ? 0 : separator + 1;
        if (name.substr(length) == kManifest) {
            return name.substr(0, length);
        }
    }
    return std::nullopt;
}

}  // namespace

Inspected inspectDirectory(const std::string& package) {
    Inspected inspected{readManifest(package), {}};
    for (const auto& [type, target] : inspected.metadata->getTargets()) {
        for (const ModelComponent& component : target.components) {
            std::error_code missing;
            const std::string path = component.path.str();
            const std::uint64_t size =
                fs::file_size(systemPath(componentPath(package, component.path)), missing);
            if (!missing) {
                inspected.sizes[path] = size;
            }
        }
    }
    return inspected;
}

Inspected inspectArchive(const std::string& path) {
    const Bytes archive = readFile(path);
    requireArchive(archive, path);
    const Content content = readContent(archive);
    const std::optional<std::string> place = placeOfManifest(content);
    if (!place.has_value()) {
        throw VelmoraQuavin::ModelMetaDataException(path + " holds no manifest.json");
    }
    // The library reads manifests from files.
    const TemporaryDirectory temporary;
    const TarEntry& manifest = content.files.at(*place + "manifest.json");
    writeNewFile(join(temporary.path(), "manifest.json"),
                 {reinterpret_cast<const char*>(manifest.content), manifest.size});
    Inspected inspected{std::make_shared<VelmoraQuavin::ModelMetadata>(), {}};
    const VelmoraQuavin::Filepath copy(temporary.path());
    if (!inspected.metadata
             ->load(VelmoraQuavin::Filepath(copy).append(VelmoraQuavin::Filepath("manifest.json")))
             .ok()) {
        throw VelmoraQuavin::ModelMetaDataException("The manifest.json in " + path +
                                                    " is no manifest");
    }
    for (const auto& [name, entry] : content.files) {
        if (name.substr(0, place->size()) == *place) {
            inspected.sizes[name.substr(place->size())] = entry.size;
        }
    }
    return inspected;
}

}  // namespace quavin_tool
