#include "temporary_directory.h"

#include <filesystem>
#include <random>
#include <system_error>

#include "files.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;

constexpr int kAttempts = 100;

}  // namespace

TemporaryDirectory::TemporaryDirectory(const std::string& parent) {
    const fs::path place = parent.empty() ? fs::temp_directory_path() : fs::u8path(parent);
    std::random_device random;
    std::error_code error;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const fs::path candidate = place / (".quavin-" + std::to_string(random()));
        if (fs::create_directory(candidate, error)) {
            path_ = candidate.u8string();
            fs::permissions(candidate, fs::perms::owner_all);
            return;
        }
    }
    throw VelmoraQuavin::FileException("No directory can be made in " + place.u8string() +
                                       (error ? ": " + error.message() : ""));
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(fs::u8path(path_), ignored);
}

}  // namespace quavin_tool
