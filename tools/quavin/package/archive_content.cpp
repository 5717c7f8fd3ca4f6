#include "tools/quavin/package/archive_content.h"

#include "package/manifest/manifest_path.h"

namespace quavin_tool {

bool isArchive(const WipedBytes& bytes) {
    return bytes.size() >= VelmoraQuavin::internal::kTarBlockSize &&
           tarChecksumMatches(VelmoraQuavin::internal::TarHeader(bytes.data()));
}

VelmoraQuavin::internal::ArchivedFiles readArchive(const WipedBytes& archive,
                                                   const std::string& path) {
    try {
        return VelmoraQuavin::internal::readArchivedPackage(archive.data(), archive.size());
    } catch (const VelmoraQuavin::ModelMetaDataException&) {
        throw VelmoraQuavin::ModelMetaDataException(path + " contains no " +
                                                    VelmoraQuavin::internal::kManifestName);
    }
}

}  // namespace quavin_tool
