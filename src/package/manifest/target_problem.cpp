#include "package/manifest/target_problem.h"

#include "core/diagnostics.h"
#include "package/manifest/metadata_access.h"

namespace VelmoraQuavin::internal {

void diagnoseMissingTarget(const ModelMetadata& metadata, std::string_view needed) noexcept {
    diagnose([&metadata, needed] {
        const String& written = MetadataAccess::targetsAsWritten(metadata);
        return "loading the package " + inQuotes(packageTitle(metadata)) + ": the target " +
               inQuotes(needed) + " is needed, but " +
               (written.empty() ? "the metadata has none" : written.str());
    });
}

}  // namespace VelmoraQuavin::internal
