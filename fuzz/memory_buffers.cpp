// Packages in buffers in memory, without an engine. Each buffer is a byte with the size of its name
// in the lower seven bits, two bytes with that of its content, least significant first, name and
// content. If the top bit of the first byte is set, the buffer has an owner.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/memory_package.h"
#include "fuzz/promise.h"
#include "fuzz/quiet_diagnostics.h"
#include "quavin/status.h"

using VelmoraQuavin::PackageBuffer;
using VelmoraQuavin::internal::MemorySource;

namespace {

std::string_view take(std::string_view& input, std::size_t size) {
    const std::string_view taken = input.substr(0, size);
    input.remove_prefix(taken.size());
    return taken;
}

PackageBuffer takeBuffer(std::string_view& input) {
    const auto first = static_cast<unsigned char>(take(input, 1).front());
    std::size_t size = 0;
    for (const char byte : take(input, 2)) {
        size = size >> 8 | static_cast<std::size_t>(static_cast<unsigned char>(byte)) << 8;
    }
    PackageBuffer buffer;
    buffer.name = take(input, first & 0x7FU);
    const auto content = std::make_shared<const std::string>(take(input, size));
    buffer.data = content->data();
    buffer.size = content->size();
    buffer.owner = content;
    return buffer;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const quavin_fuzz::QuietDiagnostics diagnostics;

    std::vector<PackageBuffer> buffers;
    std::vector<std::shared_ptr<const void>> callers;  // of buffers without an owner
    for (std::string_view rest = quavin_fuzz::textOf(data, size); !rest.empty();) {
        const bool hasOwner = (static_cast<unsigned char>(rest.front()) & 0x80U) != 0;
        buffers.push_back(takeBuffer(rest));
        if (!hasOwner) {
            callers.push_back(std::move(buffers.back().owner));
        }
    }
    try {
        quavin_fuzz::readPackage(std::make_shared<const MemorySource>(buffers));
    } catch (const VelmoraQuavin::Exception& exception) {
        quavin_fuzz::require(exception.getStatusCode() != VelmoraQuavin::SUCCESS,
                             "a refusal has a code");
    }
    return 0;
}
