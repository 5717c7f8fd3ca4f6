#include "tools/quavin/io/file.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>

#include "core/stream_steps.h"
#include "platform/input_file.h"
#include "platform/private_file.h"
#include "quavin/files.h"

namespace quavin_tool {

namespace fs = std::filesystem;
namespace platform = VelmoraQuavin::internal::platform;
using VelmoraQuavin::FileException;
using VelmoraQuavin::Filepath;
using VelmoraQuavin::FileUtils;

namespace {

void writeNew(const std::string& path, std::string_view content, platform::Readers readers) {
    const std::string problem = platform::writeNewFile(
        path, reinterpret_cast<const unsigned char*>(content.data()), content.size(), readers);
    if (!problem.empty()) {
        throw FileException(path + " " + problem);
    }
}

// For pipes and devices, which cannot be replaced by a new file.
void writeInto(const std::string& path, std::string_view content) {
    std::ofstream file = FileUtils::openFileToWriteBinaryData(Filepath(path));
    VelmoraQuavin::internal::writeInSteps(file, content.data(), content.size());
    file.close();
    if (!file) {
        throw FileException(path + " cannot be written");
    }
}

// Follows links to their target, which may not exist yet: the target is written, the links stay.
fs::path endOfLinks(fs::path file) {
    constexpr int kMostLinks = 40;  // like the system's own limit
    std::error_code problem;
    for (int i = 0; i < kMostLinks && fs::is_symlink(file, problem); ++i) {
        const fs::path next = fs::read_symlink(file, problem);
        if (problem) {
            break;
        }
        file = file.parent_path() / next;
    }
    return file;
}

}  // namespace

WipedBytes readFile(const std::string& path) {
    std::string problem;
    std::optional<platform::InputFile> file = platform::InputFile::open(path, problem);
    if (!file.has_value()) {
        throw FileException(path + " " + problem);
    }
    WipedBytes bytes(file->size());
    std::uint64_t got = 0;
    problem = file->read(bytes.data(), got);
    if (problem.empty() && got < file->size()) {
        problem = "became shorter while it was read";
    }
    if (!problem.empty()) {
        throw FileException(path + " " + problem);
    }
    return bytes;
}

void writeFile(const std::string& path, std::string_view content) {
    std::error_code ignored;
    const fs::path file = endOfLinks(fs::u8path(path));
    const fs::file_type type = fs::status(file, ignored).type();
    if (type != fs::file_type::regular && type != fs::file_type::not_found) {
        writeInto(path, content);
        return;
    }
    const std::string problem = platform::replaceFile(
        file.u8string(), reinterpret_cast<const unsigned char*>(content.data()), content.size());
    if (!problem.empty()) {
        throw FileException(path + " " + problem);
    }
}

void writeNewFile(const std::string& path, std::string_view content) {
    writeNew(path, content, platform::Readers::kEveryone);
}

void writePrivateFile(const std::string& path, std::string_view content) {
    writeNew(path, content, platform::Readers::kOwner);
}

}  // namespace quavin_tool
