#include "fuzz/memory_package.h"

#include <vector>

#include "fuzz/promise.h"
#include "fuzz/secured_form.h"
#include "package/source/network_components.h"

namespace quavin_fuzz {

namespace internal = VelmoraQuavin::internal;

namespace {

// Reading every byte lets the sanitizers see whether it belongs to the package.
void touch(const char* bytes, std::uint64_t size) {
    volatile char last = 0;
    for (std::uint64_t i = 0; i < size; ++i) {
        last = bytes[i];
    }
    static_cast<void>(last);
}

void readComponent(const internal::ComponentSource& source,
                   const internal::NetworkComponentEntry& component) {
    internal::ComponentReader reader(source, component);
    if (reader.isInMemory()) {
        const std::optional<internal::MappedBytes> bytes = reader.map();
        require(bytes.has_value(), "what is in memory can be mapped");
        touch(bytes->data.get(), bytes->size);
        return;
    }
    std::vector<char> buffer(reader.size());
    const std::uint64_t size = reader.read(buffer.data());
    require(size <= buffer.size(), "the content fits the buffer");
    touch(buffer.data(), buffer.size());
}

}  // namespace

VelmoraQuavin::PackageKeys componentKeys() {
    VelmoraQuavin::PackageKeys keys;
    keys.setComponentKey(kKey.data());
    return keys;
}

void readPackage(const std::shared_ptr<const internal::MemorySource>& source) {
    const std::shared_ptr<VelmoraQuavin::ModelMetadata> metadata =
        internal::readMetadata(source, componentKeys());
    for (const auto& [type, target] : metadata->getTargets()) {
        const std::vector<internal::NetworkComponentEntry> components =
            internal::collectNetworkComponents(target.components, *source);
        if (!internal::checkNetworkComponents(components).ok()) {
            continue;
        }
        readComponent(*source, components[0]);
        readComponent(*source, components[1]);
    }
}

}  // namespace quavin_fuzz
