#include "tools/quavin/io/new_path.h"

#include <filesystem>
#include <system_error>

#include "platform/private_file.h"
#include "quavin/status.h"
#include "text/portable_name.h"
#include "tools/quavin/io/path_text.h"

namespace quavin_tool {

namespace fs = std::filesystem;
namespace platform = VelmoraQuavin::internal::platform;
using VelmoraQuavin::FileException;

namespace {

[[noreturn]] void refuseTaken(const std::string& path) {
    throw VelmoraQuavin::InvalidArgumentsException(
        path + " already exists; remove it or choose another name");
}

}  // namespace

bool isThere(const std::string& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(fs::u8path(path), ignored));
}

void requireAbsent(const std::string& path) {
    if (isThere(path)) {
        refuseTaken(path);
    }
}

void requirePortableName(const std::string& path, const std::string& advice) {
    // "a:b" is a path on a drive on Windows, and a file name elsewhere.
    const fs::path file = fs::u8path(path);
    const bool onDrive = file.has_root_name() && !file.has_root_directory();
    const std::string name = onDrive ? path : fileName(path);
    const bool isPlace = name.empty() || name == "." || name == "..";
    if (!isPlace && !VelmoraQuavin::internal::isPortableName(name)) {
        throw VelmoraQuavin::InvalidArgumentsException(
            "\"" + name + "\" is a name that Windows reserves or does not allow: " + advice);
    }
}

void moveToNew(const std::string& from, const std::string& to, const std::string& shown) {
    std::string problem;
    switch (platform::moveToNew(from, to, problem)) {
        case platform::Moving::kDone:
            return;
        case platform::Moving::kNameTaken:
            refuseTaken(shown);
        default:
            throw FileException(shown + " " + problem);
    }
}

NewDirectories::NewDirectories(const std::string& path) {
    std::error_code error;
    // A drive, like any root, is its own parent.
    for (fs::path missing = fs::u8path(path);
         missing.has_relative_path() && !fs::exists(missing, error);
         missing = missing.parent_path()) {
        if (missing.has_filename()) {
            made_.push_back(missing.u8string());
        }
    }
    fs::create_directories(fs::u8path(path), error);
    if (!fs::is_directory(fs::u8path(path))) {
        throw FileException("The directory " + path + " cannot be created" +
                            (error ? ": " + error.message() : ""));
    }
}

NewDirectories::~NewDirectories() {
    std::error_code ignored;
    for (const std::string& directory : made_) {
        fs::remove(fs::u8path(directory), ignored);
    }
}

}  // namespace quavin_tool
