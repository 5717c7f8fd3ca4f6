#include "engine/openvino/network_component.h"

#include <cstddef>
#include <string>

#include "core/diagnostics.h"

namespace VelmoraQuavin::internal {
namespace {

constexpr std::size_t kNeeded = 2;  // topology and weights

bool isRead(const ModelComponent& component) {
    return component.name == ComponentKind::File || component.name == ComponentKind::SecuredFile;
}

void diagnoseIncompleteModel(const std::vector<ModelComponent>& components,
                             const Filepath& rootDir) {
    diagnose([&] {
        NameList read;
        NameList skipped;
        for (const ModelComponent& component : components) {
            (isRead(component) ? read : skipped)
                .add(isRead(component) ? component.path.view() : component.name.view());
        }
        return "loading the package " + inQuotes(rootDir.c_str()) +
               R"(: two components named "file" or "secured_file" are needed, and there is )" +
               (read.empty() ? "none" : read.text()) +
               (skipped.empty() ? "" : "; skipped for their names: " + skipped.text());
    });
}

}  // namespace

std::vector<NetworkComponentEntry> collectNetworkComponents(
    const std::vector<ModelComponent>& components, const Filepath& rootDir) {
    std::vector<NetworkComponentEntry> entries;
    for (const ModelComponent& component : components) {
        if (isRead(component)) {
            Filepath resolved(rootDir);
            resolved.append(Filepath(component.path));
            entries.push_back(
                {resolved.c_str(), component.name, component.path, component.encryption});
        }
    }
    if (entries.size() < kNeeded) {
        diagnoseIncompleteModel(components, rootDir);  // what checkNetworkComponents() refuses
    }
    return entries;
}

QuavinStatus checkNetworkComponents(const std::vector<NetworkComponentEntry>& entries) {
    if (entries.size() < kNeeded) {
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
