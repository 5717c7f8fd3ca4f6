#include "tools/quavin/io/temporary_directory.h"

#include <filesystem>
#include <random>
#include <system_error>

#include "platform/private_file.h"
#include "quavin/status.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;

constexpr int kAttempts = 100;

}  // namespace

TemporaryDirectory::TemporaryDirectory(const std::string& parent) {
    std::random_device random;
    std::error_code error;
    const fs::path place = parent.empty() ? fs::temp_directory_path(error) : fs::u8path(parent);
    if (error) {
        throw VelmoraQuavin::FileException("There is no directory for temporary files: " +
                                           error.message());
    }
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const fs::path candidate = place / (".quavin-" + std::to_string(random()));
        path_ = candidate.u8string();
        if (VelmoraQuavin::internal::platform::makePrivateDirectory(path_)) {
            return;
        }
    }
    throw VelmoraQuavin::FileException("Cannot create a directory in " + place.u8string());
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(fs::u8path(path_), ignored);
}

}  // namespace quavin_tool
