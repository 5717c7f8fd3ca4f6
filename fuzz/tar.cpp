// Tar archives with a length: entries, names and where extraction would write them.
#include <algorithm>

#include "fuzz/promise.h"
#include "package/archive/tar_reader.h"
#include "quavin/status.h"

using quavin_fuzz::require;
using VelmoraQuavin::internal::TarEntry;
using VelmoraQuavin::internal::TarEntryPath;
using VelmoraQuavin::internal::TarReader;

namespace {

bool staysBelow(const std::string& name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\\\0", 3)) == std::string::npos;
}

// Reading every byte lets the sanitizers see whether it belongs to the archive.
unsigned int sumOf(const TarEntry& entry) {
    unsigned int sum = 0;
    for (std::uint64_t i = 0; i < entry.size; ++i) {
        sum += entry.content[i];
    }
    return sum;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TarReader reader(data, size);
    try {
        for (TarEntry entry; reader.next(entry);) {
            require(entry.size == 0 ||
                        (entry.content >= data && entry.content + entry.size <= data + size),
                    "contents lie in the archive");
            volatile unsigned int sum = sumOf(entry);
            static_cast<void>(sum);
            const TarEntryPath path = VelmoraQuavin::internal::requireTarEntryPath(entry);
            require(std::all_of(path.names.begin(), path.names.end(), staysBelow),
                    "names lead downwards");
        }
    } catch (const VelmoraQuavin::Exception& exception) {
        require(!std::string_view(exception.what()).empty(), "a refusal says why");
    }
    return 0;
}
