#include "files.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "core/portable_name.h"
#include "core/secure_wipe.h"
#include "core/stream_steps.h"
#include "core/text_tools.h"
#include "platform/input_file.h"
#include "platform/private_file.h"

namespace quavin_tool {

namespace fs = std::filesystem;
using VelmoraQuavin::FileException;
using VelmoraQuavin::Filepath;
using VelmoraQuavin::FileUtils;
using VelmoraQuavin::internal::platform::InputFile;

namespace {

using VelmoraQuavin::internal::platform::Readers;

void writeNew(const std::string& path, std::string_view content, Readers readers) {
    const std::string problem = VelmoraQuavin::internal::platform::writeNewFile(
        path, reinterpret_cast<const unsigned char*>(content.data()), content.size(), readers);
    if (!problem.empty()) {
        throw FileException(path + " " + problem);
    }
}

// For pipes and devices, which nothing can take the place of.
void writeInto(const std::string& path, std::string_view content) {
    std::ofstream file = FileUtils::openFileToWriteBinaryData(Filepath(path));
    VelmoraQuavin::internal::writeInSteps(file, content.data(), content.size());
    file.close();
    if (!file) {
        throw FileException(path + " cannot be written");
    }
}

[[noreturn]] void refuseTaken(const std::string& path) {
    throw VelmoraQuavin::InvalidArgumentsException(
        path + " is there already; remove it, or choose another name");
}

// What links lead to, be it nothing yet: that is written, and the links stay.
fs::path endOfLinks(fs::path file) {
    constexpr int kMostLinks = 40;  // as many as the system follows
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

void require(const VelmoraQuavin::QuavinStatus& status) {
    if (!status.ok()) {
        throw VelmoraQuavin::Exception(status.getDescription(), status.getCode());
    }
}

Bytes::Bytes(std::uint64_t size) : data_(new char[size]), size_(size) {}
Bytes::Bytes(Bytes&& other) noexcept
    : data_(std::move(other.data_)), size_(std::exchange(other.size_, 0)) {}
Bytes& Bytes::operator=(Bytes&& other) noexcept {
    if (this != &other) {
        wipe();
        data_ = std::move(other.data_);
        size_ = std::exchange(other.size_, 0);
    }
    return *this;
}
Bytes::~Bytes() {
    wipe();
}

void Bytes::wipe() {
    if (data_ != nullptr) {
        VelmoraQuavin::internal::secureWipe(data_.get(), size_);
    }
}

void Bytes::truncate(std::uint64_t size) {
    VelmoraQuavin::internal::secureWipe(data_.get() + size, size_ - size);
    size_ = size;
}

Bytes readFile(const std::string& path) {
    std::string problem;
    std::optional<InputFile> file = InputFile::open(path, problem);
    if (!file.has_value()) {
        throw FileException(path + " " + problem);
    }
    Bytes bytes(file->size());
    std::uint64_t got = 0;
    problem = file->read(bytes.data(), got);
    if (problem.empty() && got < file->size()) {
        problem = "has become shorter while it was read";
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
    const std::string problem = VelmoraQuavin::internal::platform::replaceFile(
        file.u8string(), reinterpret_cast<const unsigned char*>(content.data()), content.size());
    if (!problem.empty()) {
        throw FileException(path + " " + problem);
    }
}

void writeNewFile(const std::string& path, std::string_view content) {
    writeNew(path, content, Readers::kEveryone);
}

void writeOwnFile(const std::string& path, std::string_view content) {
    writeNew(path, content, Readers::kOwner);
}

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
    // "a:b" is a place on a drive for Windows, and a name elsewhere.
    const fs::path file = fs::u8path(path);
    const bool onDrive = file.has_root_name() && !file.has_root_directory();
    const std::string name = onDrive ? path : fileName(path);
    const bool isPlace = name.empty() || name == "." || name == "..";
    if (!isPlace && !VelmoraQuavin::internal::isPortableName(name)) {
        throw VelmoraQuavin::InvalidArgumentsException(
            "\"" + name + "\" is a name that Windows reserves or does not take: " + advice);
    }
}

void moveToNew(const std::string& from, const std::string& to, const std::string& shown) {
    using VelmoraQuavin::internal::platform::Moving;
    std::string problem;
    switch (VelmoraQuavin::internal::platform::moveToNew(from, to, problem)) {
        case Moving::kDone:
            return;
        case Moving::kNameTaken:
            refuseTaken(shown);
        default:
            throw FileException(shown + " " + problem);
    }
}

NewDirectories::NewDirectories(const std::string& path) {
    std::error_code error;
    // A drive, as any root, is its own parent.
    for (fs::path missing = fs::u8path(path);
         missing.has_relative_path() && !fs::exists(missing, error);
         missing = missing.parent_path()) {
        if (missing.has_filename()) {
            made_.push_back(missing.u8string());
        }
    }
    fs::create_directories(fs::u8path(path), error);
    if (!fs::is_directory(fs::u8path(path))) {
        throw FileException("The directory " + path + " cannot be made" +
                            (error ? ": " + error.message() : ""));
    }
}

NewDirectories::~NewDirectories() {
    std::error_code ignored;
    for (const std::string& directory : made_) {
        fs::remove(fs::u8path(directory), ignored);
    }
}

fs::path systemPath(const std::string& path) {
    try {
        return fs::u8path(path);
    } catch (const fs::filesystem_error&) {
        return fs::u8path(VelmoraQuavin::internal::printableText(path));
    }
}

std::string shellPath(const Filepath& path) {
    std::string text = VelmoraQuavin::String(path.c_str()).str();
    for (char& character : text) {
        if (character == '\\') {
            character = static_cast<char>(fs::path::preferred_separator);
        }
    }
    // The separator of a root stays: without it "C:\" is another directory.
    const std::size_t root = systemPath(text).root_path().u8string().size();
    while (text.size() > std::max<std::size_t>(root, 1) &&
           (text.back() == '/' || text.back() == '\\')) {
        text.pop_back();
    }
    return text;
}

std::string componentPath(const std::string& package, const VelmoraQuavin::String& path) {
    return shellPath(Filepath(package).append(Filepath(path)));
}

std::string join(const std::string& directory, const std::string& name) {
    return (fs::u8path(directory) / fs::u8path(name)).u8string();
}

std::string fileName(const std::string& path) {
    const fs::path file = fs::u8path(path);
    // With a separator at its end the last part is empty.
    return (file.has_filename() ? file : file.parent_path()).filename().u8string();
}

std::string stemOf(const std::string& path) {
    return fs::u8path(fileName(path)).stem().u8string();
}

std::string inSmallLetters(std::string_view text) {
    std::string small(text);
    for (char& character : small) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    return small;
}

std::string readableSize(std::uint64_t bytes) {
    if (bytes < 1024) {
        return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    }
    constexpr std::array<const char*, 4> kUnits{"KiB", "MiB", "GiB", "TiB"};
    double value = static_cast<double>(bytes) / 1024;
    std::size_t unit = 0;
    while (value >= 1024 && unit + 1 < kUnits.size()) {
        value /= 1024;
        ++unit;
    }
    std::array<char, 32> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), "%.1f %s", value, kUnits.at(unit)));
    return text.data();
}

}  // namespace quavin_tool
