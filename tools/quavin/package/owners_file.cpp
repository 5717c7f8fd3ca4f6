#include "tools/quavin/package/owners_file.h"

#include "platform/private_file.h"
#include "quavin/status.h"

namespace quavin_tool {

namespace platform = VelmoraQuavin::internal::platform;

std::size_t readOwnersFile(const std::string& path, bool allowOpenFile, unsigned char* buffer,
                           std::size_t capacity, const std::string& what) {
    std::size_t size = 0;
    std::string problem;
    const auto others =
        allowOpenFile ? platform::OpenToOthers::kAllowed : platform::OpenToOthers::kRefused;
    switch (platform::readPrivateFile(path, others, buffer, capacity, size, problem)) {
        case platform::PrivateReading::kDone:
            return size;
        case platform::PrivateReading::kOpenToOthers:
            problem += ", or pass --allow-open-key-file";
            [[fallthrough]];
        default:
            throw VelmoraQuavin::FileException(what + " " + problem);
    }
}

}  // namespace quavin_tool
