#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "support/system.h"

namespace VelmoraQuavin::testing {

/// A new empty directory, removed with its contents on destruction.
class TempDirectory {
public:
    TempDirectory() : path_(makeUnique()) {}
    TempDirectory(const TempDirectory&) = delete;
    TempDirectory& operator=(const TempDirectory&) = delete;
    ~TempDirectory() { removeTree(path_); }

    const std::filesystem::path& path() const { return path_; }
    /// The directory as a library path: UTF-8, without a trailing separator.
    std::string text() const { return path_.u8string(); }
    /// An entry of the directory, joined with the library's separator.
    std::string entry(std::string_view name) const { return text() + "\\" + std::string(name); }

    /// Writes a file; its name may contain "/".
    void write(const std::string& name, std::string_view content) const {
        const std::filesystem::path file = path_ / std::filesystem::u8path(name);
        std::filesystem::create_directories(file.parent_path());
        std::ofstream stream(file, std::ios::binary);
        stream.write(content.data(), static_cast<std::streamsize>(content.size()));
        if (!stream) {
            throw std::runtime_error("cannot write " + file.string());
        }
    }
    /// The content of a file.
    std::string read(const std::string& name) const { return read(name, std::ios::binary); }
    /// The content of a text file: every line ending, whatever the system's, is "\n".
    std::string readText(const std::string& name) const { return read(name, std::ios::in); }

private:
    std::string read(const std::string& name, std::ios::openmode mode) const {
        std::ifstream stream(path_ / std::filesystem::u8path(name), mode);
        std::ostringstream content;
        content << stream.rdbuf();
        return content.str();
    }
    static std::filesystem::path makeUnique() {
        std::random_device random;
        for (int attempt = 0; attempt < 100; ++attempt) {
            auto candidate = std::filesystem::temp_directory_path() /
                             ("quavin-test-" + std::to_string(random()));
            if (std::filesystem::create_directory(candidate)) {
                return candidate;
            }
        }
        throw std::runtime_error("cannot create a temporary directory");
    }

    std::filesystem::path path_;
};

}  // namespace VelmoraQuavin::testing
