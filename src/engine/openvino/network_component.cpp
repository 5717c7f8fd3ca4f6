#include "engine/openvino/network_component.h"

namespace VelmoraQuavin::internal {

std::vector<NetworkComponentEntry> collectNetworkComponents(
    const std::vector<ModelComponent>& components, const Filepath& rootDir) {
    std::vector<NetworkComponentEntry> entries;
    for (const ModelComponent& component : components) {
        if (component.name == ComponentKind::File || component.name == ComponentKind::SecuredFile) {
            Filepath resolved(rootDir);
            resolved.append(Filepath(component.path));
            entries.push_back(
                {resolved.c_str(), component.name, component.path, component.encryption});
        }
    }
    return entries;
}

QuavinStatus checkNetworkComponents(const std::vector<NetworkComponentEntry>& entries) {
    if (entries.size() < 2) {
        return {INVALID_MODEL_PATH, "Incomplete Model"};
    }
    // Joined paths hold a separator at least; the checks guard what is read, whoever joined it.
    if (entries[0].resolvedPath.empty()) {
        return {INVALID_MODEL_PATH, "No Model Path Defined"};
    }
    if (entries[1].resolvedPath.empty()) {
        return {INVALID_WEIGHTS_PATH, "No Weights Path Defined"};
    }
    return {SUCCESS, ""};
}

}  // namespace VelmoraQuavin::internal
