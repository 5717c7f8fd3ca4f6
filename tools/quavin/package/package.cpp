#include "tools/quavin/package/package.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/require.h"

namespace quavin_tool {

namespace fs = std::filesystem;
using VelmoraQuavin::ComponentKind;
using VelmoraQuavin::ModelComponent;
using VelmoraQuavin::ModelTarget;
using VelmoraQuavin::QuavinModel;
using VelmoraQuavin::QuavinModelType;

std::string packageProblem(const std::string& package) {
    std::error_code ignored;
    if (fs::is_directory(fs::u8path(package), ignored)) {
        return "";
    }
    return isThere(package) ? package + " is neither a directory nor an archive"
                            : "There is no directory or archive " + package;
}

Metadata readManifest(const std::string& package) {
    const std::string problem = packageProblem(package);
    if (!problem.empty()) {
        throw VelmoraQuavin::InvalidArgumentsException(problem);
    }
    auto metadata = std::make_shared<VelmoraQuavin::ModelMetadata>();
    require(metadata->load(manifestPath(package)));
    return metadata;
}

ModelTarget& engineTarget(VelmoraQuavin::ModelMetadata& metadata) {
    const auto found = metadata.getTargets().find(QuavinModelType::Openvino);
    if (found == metadata.getTargets().end()) {
        throw VelmoraQuavin::ModelMetaDataException("The manifest has no target \"Openvino\"");
    }
    return found->second;
}

bool isSecured(const ModelTarget& target) {
    return std::any_of(target.components.begin(), target.components.end(),
                       [](const ModelComponent& component) {
                           return component.name == ComponentKind::SecuredFile;
                       });
}

Features zeroInputs(QuavinModel& model) {
    Features inputs;
    require(model.allocateInputs(inputs));
    return inputs;
}

Features predict(QuavinModel& model, const Features& inputs) {
    Features outputs;
    require(model.predict(inputs, outputs));
    return outputs;
}

}  // namespace quavin_tool
