#include "package/target_problem.h"

#include "core/diagnostics.h"

namespace VelmoraQuavin::internal {

struct MetadataAccess {
    // Empty for metadata that were read while diagnostics were off, or that a host made.
    static const String& targetsAsWritten(const ModelMetadata& metadata) {
        return metadata.targetsAsWritten_;
    }
};

void diagnoseMissingTarget(const ModelMetadata& metadata) noexcept {
    diagnose([&metadata] {
        const String& written = MetadataAccess::targetsAsWritten(metadata);
        return "loading the package " + inQuotes(metadata.getRootDir().c_str()) +
               ": the target \"Openvino\" is needed, and " +
               (written.empty() ? "the metadata have none" : written.str());
    });
}

}  // namespace VelmoraQuavin::internal
