#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "quavin/files.h"
#include "quavin/status.h"

namespace quavin_tool {

/// Throws what a status says, where it is no success.
void require(const VelmoraQuavin::QuavinStatus& status);

/// The bytes of a file, wiped when they go: they may be decrypted, or about to be encrypted.
class Bytes {
public:
    Bytes() = default;
    explicit Bytes(std::uint64_t size);
    Bytes(Bytes&& other) noexcept;
    Bytes& operator=(Bytes&& other) noexcept;
    ~Bytes();

    std::uint64_t size() const { return size_; }
    unsigned char* data() { return reinterpret_cast<unsigned char*>(data_.get()); }
    const unsigned char* data() const { return reinterpret_cast<unsigned char*>(data_.get()); }
    std::string_view text() const { return {data_.get(), size_}; }
    /// Makes it shorter.
    void truncate(std::uint64_t size);

private:
    void wipe();

    std::unique_ptr<char[]> data_;
    std::uint64_t size_ = 0;
};

/// Reads a whole file.
/// @throws FileException naming it.
Bytes readFile(const std::string& path);
/// Writes a whole file. One that is there keeps its content until its successor is whole, and stays
/// where that fails.
/// @throws FileException naming it.
void writeFile(const std::string& path, std::string_view content);
/// Writes a new file; nothing may be there yet.
void writeNewFile(const std::string& path, std::string_view content);
/// The same for a file that its owner alone may read.
void writeOwnFile(const std::string& path, std::string_view content);
/// @throws InvalidArgumentsException where something is there.
void requireAbsent(const std::string& path);
/// @param advice what to do about a name that not every system takes.
/// @throws InvalidArgumentsException where the last name of a path is one.
void requirePortableName(const std::string& path, const std::string& advice);
/// Gives a file or directory another name, where nothing is there at that moment.
/// @param shown the new name as the user gave it.
/// @throws InvalidArgumentsException where something is there; FileException where it fails.
void moveToNew(const std::string& from, const std::string& to, const std::string& shown);
/// Whether something is there, be it a link that leads nowhere.
bool isThere(const std::string& path);

/// Makes a directory and what is missing above it, and removes what it has made unless it is told
/// to keep it. What is not empty by then stays.
class NewDirectories {
public:
    /// @throws FileException where the directory cannot be made.
    explicit NewDirectories(const std::string& path);
    NewDirectories(const NewDirectories&) = delete;
    NewDirectories& operator=(const NewDirectories&) = delete;
    ~NewDirectories();

    void keep() { made_.clear(); }

private:
    std::vector<std::string> made_;  // the innermost first
};

/// A path as the system takes it, from UTF-8. Where the system's names are texts, what is no UTF-8
/// becomes "?", which is in no file's name there.
std::filesystem::path systemPath(const std::string& path);
/// A path of the library as this system's shell takes it.
std::string shellPath(const VelmoraQuavin::Filepath& path);
/// The file of a package's component, as this system's shell takes it.
std::string componentPath(const std::string& package, const VelmoraQuavin::String& path);
/// Joins a directory and a name as this system's shell does.
std::string join(const std::string& directory, const std::string& name);
/// What stands behind the last separator.
std::string fileName(const std::string& path);
/// The same without its ending.
std::string stemOf(const std::string& path);
/// A text with its ASCII letters in lower case.
std::string inSmallLetters(std::string_view text);
/// "12 bytes", "3.4 MiB".
std::string readableSize(std::uint64_t bytes);

}  // namespace quavin_tool
