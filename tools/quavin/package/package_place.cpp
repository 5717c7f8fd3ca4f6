#include "tools/quavin/package/package_place.h"

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "package/archive/tar_entry_path.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/path_text.h"
#include "tools/quavin/io/require.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/archive_content.h"
#include "tools/quavin/package/package.h"
#include "tools/quavin/package/secured_bytes.h"
#include "tools/quavin/package/secured_manifest.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;
using VelmoraQuavin::ComponentKind;
using VelmoraQuavin::ModelComponent;
using VelmoraQuavin::internal::TarEntry;

std::string_view textOf(const TarEntry& entry) {
    return {reinterpret_cast<const char*>(entry.content), entry.size};
}

// Decrypts an archive. An encrypted archive cannot be told from other bytes.
WipedBytes plainArchive(WipedBytes archive, const std::string& path, const Key* key) {
    if (key == nullptr) {
        throw ArchiveKeyException(
            path +
            " is neither a directory nor a tar archive; an encrypted archive needs "
            "--key-file or --key-env");
    }
    WipedBytes plain = decrypt(archive, key->bytes(), path);
    if (!isArchive(plain)) {
        throw ArchiveKeyException(
            path +
            " is not a tar archive, even after decryption: the key is wrong, or the file is "
            "damaged");
    }
    return plain;
}

// The parts of a component's path, to look up in an archive; none if it leads out of the archive.
std::vector<std::string> partsOf(const ModelComponent& component) {
    const auto parsed = VelmoraQuavin::internal::parseTarEntryPath(component.path.view());
    return parsed.refusal.empty() ? parsed.names : std::vector<std::string>{};
}

// Writes a component as a secured file. If the archive lacks it, loading reports that.
void writeComponent(const ModelComponent& component, const ArchiveContent& content, const Key& key,
                    const std::string& directory) {
    std::string name = content.package;
    std::string target = directory;
    for (const std::string& part : partsOf(component)) {
        NewDirectories(target).keep();
        name += (name == content.package ? "" : "/") + part;
        target = join(target, part);
    }
    const auto entry = content.files.find(name);
    if (entry == content.files.end() || isThere(target)) {
        return;
    }
    if (component.name == ComponentKind::File) {
        writeNewFile(target, encrypt(textOf(entry->second), key).text());
    } else {
        writeNewFile(target, textOf(entry->second));
    }
}

void writeSecured(const ArchiveContent& content, const Key& key, const std::string& directory) {
    const std::string_view manifest = textOf(content.files.at(content.package + kManifestName));
    writeNewFile(join(directory, kManifestName), manifest);
    VelmoraQuavin::ModelMetadata metadata;
    const auto status = metadata.load(manifestPath(directory));
    const auto target = metadata.getTargets().find(VelmoraQuavin::QuavinModelType::Openvino);
    if (!status.ok() || target == metadata.getTargets().end()) {
        return;  // reported when the manifest is read
    }
    for (const ModelComponent& component : target->second.components) {
        writeComponent(component, content, key, directory);
    }
    writeFile(join(directory, kManifestName), withSecuredFiles(manifest));
}

}  // namespace

PackagePlace::PackagePlace(const std::string& package, const Key* key) : directory_(package) {
    std::error_code ignored;
    if (!fs::is_regular_file(fs::u8path(package), ignored)) {
        return;
    }
    WipedBytes archive = readFile(package);
    const bool isPlain = isArchive(archive);
    if (!isPlain) {
        archive = plainArchive(std::move(archive), package, key);
    }
    const ArchiveContent content = readArchive(archive, package);
    temporary_.emplace();
    directory_ = temporary_->path();
    if (!isPlain) {
        writeSecured(content, *key, directory_);
        return;
    }
    VelmoraQuavin::Filepath destination(directory_);
    const auto* const bytes = static_cast<const WipedBytes&>(archive).data();
    require(VelmoraQuavin::FileUtils::extractTarball(bytes, archive.size(), destination));
    if (!content.package.empty()) {
        directory_ = join(directory_, content.package.substr(0, content.package.size() - 1));
    }
}

}  // namespace quavin_tool
