// Secured components: sixteen bytes of key, then the stored file.
#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "fuzz/promise.h"
#include "package/secured/format.h"
#include "package/source/memory_source.h"
#include "package/source/network_components.h"
#include "quavin/status.h"

using quavin_fuzz::require;
using VelmoraQuavin::Encryption;
using VelmoraQuavin::PackageBuffer;
using VelmoraQuavin::internal::ComponentReader;
using VelmoraQuavin::internal::kSecuredVectorSize;
using VelmoraQuavin::internal::MemorySource;
using VelmoraQuavin::internal::NetworkComponentEntry;

namespace {

constexpr std::size_t kKeySize = 16;

PackageBuffer bufferOf(const char* name, std::string_view content) {
    return {name, content.data(), content.size(), nullptr};
}

// Into a buffer of exactly the size asked for, so that the sanitizers see any other access.
void read(const MemorySource& source, const NetworkComponentEntry& component) {
    ComponentReader reader(source, component);
    std::vector<char> buffer(reader.size(), 'x');
    const std::uint64_t size = reader.read(buffer.data());
    require(size == buffer.size() - kSecuredVectorSize, "all of the plaintext is there");
    require(std::all_of(buffer.end() - kSecuredVectorSize, buffer.end(),
                        [](char byte) { return byte == '\0'; }),
            "zeros follow the plaintext");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < kKeySize) {
        return 0;
    }
    const std::string_view stored = quavin_fuzz::textOf(data + kKeySize, size - kKeySize);
    const MemorySource source({bufferOf("manifest.json", ""), bufferOf("net.bin", stored)});
    NetworkComponentEntry component{"net.bin", VelmoraQuavin::ComponentKind::SecuredFile, "net.bin",
                                    Encryption()};
    component.encryption.setKey(data);
    bool isRead = true;
    try {
        read(source, component);
    } catch (const VelmoraQuavin::FileException&) {
        isRead = false;
    }
    require(isRead == VelmoraQuavin::internal::isSecuredSize(stored.size()),
            "only the size decides whether a file is decrypted");
    return 0;
}
