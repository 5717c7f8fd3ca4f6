#include "package/source/network_components.h"

#include <cstddef>
#include <cstring>
#include <string>

#include "core/diagnostics.h"
#include "package/secured/format.h"
#include "quavin/encryption.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {
namespace {

constexpr std::size_t kNeeded = 2;  // topology and weights

void diagnoseIncompleteModel(const std::vector<ModelComponent>& components,
                             const ComponentSource& source) {
    diagnose([&] {
        NameList read;
        NameList skipped;
        for (const ModelComponent& component : components) {
            (isNetworkFile(component) ? read : skipped)
                .add(isNetworkFile(component) ? component.path.view() : component.name.view());
        }
        return "loading the package " + inQuotes(source.name()) +
               R"(: two components named "file" or "secured_file" are needed, and there is )" +
               (read.empty() ? "none" : read.text()) +
               (skipped.empty() ? "" : "; skipped for their names: " + skipped.text());
    });
}

}  // namespace

std::vector<NetworkComponentEntry> collectNetworkComponents(
    const std::vector<ModelComponent>& components, const ComponentSource& source) {
    std::vector<NetworkComponentEntry> entries;
    for (const ModelComponent& component : components) {
        if (isNetworkFile(component)) {
            entries.push_back({source.resolve(component.path), component.name, component.path,
                               component.encryption});
        }
    }
    if (entries.size() < kNeeded) {
        diagnoseIncompleteModel(components, source);  // checkNetworkComponents() refuses this
    }
    return entries;
}

QuavinStatus checkNetworkComponents(const std::vector<NetworkComponentEntry>& entries) {
    if (entries.size() < kNeeded) {
        return {INVALID_MODEL_PATH, "Incomplete Model"};
    }
    // Joined paths contain at least a separator, but these checks do not rely on that.
    if (entries[0].resolvedPath.empty()) {
        return {INVALID_MODEL_PATH, "No Model Path Defined"};
    }
    if (entries[1].resolvedPath.empty()) {
        return {INVALID_WEIGHTS_PATH, "No Weights Path Defined"};
    }
    return {SUCCESS, ""};
}

ComponentReader::ComponentReader(const ComponentSource& source,
                                 const NetworkComponentEntry& component)
    : component_(component), stored_(source.open(component)) {
    if (component.isSecured() && size() > kLargestSecuredFile) {
        throw FileException("Secured file of 4 GiB or more : " + component.resolvedPath);
    }
}

uint64 ComponentReader::read(char* buffer) {
    readStored(buffer);
    return decrypt(buffer);
}

void ComponentReader::readStored(char* buffer) {
    stored_->read(buffer, stored_->size());
}

std::optional<MappedBytes> ComponentReader::map() {
    return component_.isSecured() ? std::nullopt : stored_->map();
}

uint64 ComponentReader::decrypt(char* buffer) const {
    if (!component_.isSecured()) {
        return size();
    }
    auto* bytes = reinterpret_cast<unsigned char*>(buffer);
    if (!QuavinEncryption()
             .AES_decrypt(bytes, static_cast<unsigned int>(size()), bytes,
                          component_.encryption.getKey())
             .ok()) {
        diagnose([this] {
            return "decrypting " + inQuotes(component_.resolvedPath) + ": it has " +
                   std::to_string(size()) + " bytes" +
                   (isSecuredSize(size())
                        ? ", and the system's cryptography fails"
                        : ", and a secured file has a multiple of 16, at least 16");
        });
        throw FileException("Could not decrypt file : " + component_.resolvedPath);
    }
    const uint64 content = size() - kSecuredVectorSize;
    std::memset(buffer + content, 0, kSecuredVectorSize);
    return content;
}

}  // namespace VelmoraQuavin::internal
