// "manifest.json".
#include "fuzz/promise.h"
#include "fuzz/quiet_diagnostics.h"
#include "quavin/metadata.h"

using quavin_fuzz::require;
using VelmoraQuavin::ModelMetadata;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const quavin_fuzz::QuietDiagnostics diagnostics;

    ModelMetadata metadata;
    const VelmoraQuavin::QuavinStatus status =
        metadata.loadFromMemory(quavin_fuzz::textOf(data, size).data(), size);
    require(status.ok() || status.getCode() == VelmoraQuavin::MODEL_METADATA_ERROR ||
                status.getCode() == VelmoraQuavin::FAILURE,
            "a manifest is read or refused");
    for (const auto& [type, target] : metadata.getTargets()) {
        require(!ModelTypeToName(type).empty(), "only known engines have targets");
        require(target.inputs.size() == target.inputNames.size() &&
                    target.outputs.size() == target.outputNames.size(),
                "each feature has a name");
    }
    return 0;
}
