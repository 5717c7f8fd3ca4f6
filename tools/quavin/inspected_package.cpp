#include "inspected_package.h"

#include <filesystem>
#include <system_error>

#include "archive_content.h"
#include "files.h"
#include "temporary_directory.h"

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
    const Bytes archive = readFile(path);
    if (!isArchive(archive)) {
        throw VelmoraQuavin::Exception(
            path +
                " is no tar archive; an encrypted one shows nothing before it is unpacked with "
                "its key",
            VelmoraQuavin::TAR_CHECKSUM_MISMATCH);
    }
    const ArchiveContent content = readArchive(archive, path);
    // The library reads manifests from files.
    const TemporaryDirectory temporary;
    const auto& manifest = content.files.at(content.package + "manifest.json");
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
        if (name.substr(0, content.package.size()) == content.package) {
            inspected.sizes[name.substr(content.package.size())] = entry.size;
        }
    }
    return inspected;
}

}  // namespace quavin_tool
