#include <algorithm>
#include <string>
#include <utility>

#include "package/path/package_path.h"
#include "quavin/package_memory.h"

namespace VelmoraQuavin {
namespace {

Encryption encryptionWith(const unsigned char* key) {
    Encryption encryption;
    encryption.setKey(key);
    return encryption;
}

bool isSecured(const ModelComponent& component) {
    return component.name == ComponentKind::SecuredFile ||
           component.name == ComponentKind::SecuredTar;
}

}  // namespace

PackageKeys::PackageKeys() = default;
PackageKeys::PackageKeys(const PackageKeys& other) = default;
PackageKeys& PackageKeys::operator=(const PackageKeys& other) = default;
PackageKeys::~PackageKeys() = default;

PackageKeys::PackageKeys(PackageKeys&& other) noexcept {
    *this = std::move(other);
}

// A moved std::optional would keep its key.
PackageKeys& PackageKeys::operator=(PackageKeys&& other) noexcept {
    if (this != &other) {
        archiveKey_ = other.archiveKey_;
        componentKey_ = other.componentKey_;
        keysByPath_ = std::move(other.keysByPath_);
        other.archiveKey_.reset();
        other.componentKey_.reset();
        other.keysByPath_.clear();
    }
    return *this;
}

void PackageKeys::setArchiveKey(const unsigned char* key) {
    archiveKey_ = encryptionWith(key);
}

void PackageKeys::setComponentKey(const unsigned char* key) {
    componentKey_ = encryptionWith(key);
}

void PackageKeys::setComponentKey(const String& path, const unsigned char* key) {
    const Encryption encryption = encryptionWith(key);
    const String name = internal::packagePath(path.view());
    const auto known = std::find_if(keysByPath_.begin(), keysByPath_.end(),
                                    [&name](const auto& entry) { return entry.first == name; });
    if (known == keysByPath_.end()) {
        keysByPath_.emplace_back(name, encryption);
    } else {
        known->second = encryption;
    }
}

void PackageKeys::applyTo(ModelMetadata& metadata) const {
    for (auto& [type, target] : metadata.getTargets()) {
        for (ModelComponent& component : target.components) {
            const Encryption* const key = isSecured(component) ? keyFor(component.path) : nullptr;
            if (key != nullptr) {
                component.setCryptoKey(key->getKey());
            }
        }
    }
}

const Encryption* PackageKeys::keyFor(const String& path) const {
    const String name = internal::packagePath(path.view());
    for (const auto& [known, key] : keysByPath_) {
        if (known == name) {
            return &key;
        }
    }
    return componentKey_.has_value() ? &*componentKey_ : nullptr;
}

}  // namespace VelmoraQuavin
