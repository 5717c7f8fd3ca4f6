#include "tools/quavin/package/inspected_package.h"

#include <filesystem>
#include <system_error>

#include "tools/quavin/io/file.h"
#include "tools/quavin/io/path_text.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/archive_content.h"

namespace quavin_tool {

namespace fs = std::filesystem;
using VelmoraQuavin::ModelComponent;

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
    const WipedBytes archive = readFile(path);
    if (!isArchive(archive)) {
        throw VelmoraQuavin::Exception(
            path +
                " is not a tar archive; an encrypted one must be unpacked with its key before "
                "it can be inspected",
            VelmoraQuavin::TAR_CHECKSUM_MISMATCH);
    }
    const auto files = readArchive(archive, path);
    const auto& manifest = files.at(kManifestName);
    Inspected inspected{std::make_shared<VelmoraQuavin::ModelMetadata>(), {}};
    if (!inspected.metadata->loadFromMemory(manifest.content, manifest.size).ok()) {
        throw VelmoraQuavin::ModelMetaDataException("The manifest.json in " + path +
                                                    " is not a valid manifest");
    }
    for (const auto& [name, entry] : files) {
        inspected.sizes[name] = entry.size;
    }
    return inspected;
}

}  // namespace quavin_tool
