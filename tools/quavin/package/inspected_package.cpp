#include "tools/quavin/package/inspected_package.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include "package/signature/bundle.h"
#include "package/signature/verify_signature.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/path_text.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/archive_content.h"
#include "tools/quavin/package/package_digests.h"

namespace quavin_tool {

namespace fs = std::filesystem;
using VelmoraQuavin::ModelComponent;

namespace {

void readSignature(std::string_view text, Inspected& inspected) {
    VelmoraQuavin::internal::requireSignatureSize(text.size());
    inspected.keyHint = VelmoraQuavin::internal::readBundle(text).hint;
    inspected.isSigned = true;
}

}  // namespace

Inspected inspectDirectory(const std::string& package) {
    Inspected inspected;
    inspected.metadata = readManifest(package);
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
    try {
        if (const std::optional<WipedBytes> signature = signatureInDirectory(package)) {
            readSignature(signature->text(), inspected);
        }
    } catch (const VelmoraQuavin::Exception& problem) {
        inspected.signatureProblem = problem.what();
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
    Inspected inspected;
    inspected.metadata = std::make_shared<VelmoraQuavin::ModelMetadata>();
    if (!inspected.metadata->loadFromMemory(manifest.content, manifest.size).ok()) {
        throw VelmoraQuavin::ModelMetaDataException("The manifest.json in " + path +
                                                    " is not a valid manifest");
    }
    for (const auto& [name, entry] : files) {
        inspected.sizes[name] = entry.size;
    }
    const auto signature = files.find(VelmoraQuavin::internal::kSignatureName);
    if (signature != files.end()) {
        const VelmoraQuavin::internal::TarEntry& entry = signature->second;
        try {
            readSignature({reinterpret_cast<const char*>(entry.content), entry.size}, inspected);
        } catch (const VelmoraQuavin::SignatureException& problem) {
            inspected.signatureProblem = problem.what();
        }
    }
    return inspected;
}

}  // namespace quavin_tool
