#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "quavin/files.h"
#include "support/file_tree.h"
#include "unit/package/path/path_cases.h"

namespace VelmoraQuavin::testing {
namespace {

namespace fs = std::filesystem;

void writeFile(const char* name, const char* content) {
    if (!(std::ofstream(fs::u8path(name), std::ios::binary) << content)) {
        throw std::runtime_error(std::string("cannot write ") + name);
    }
}

void replaceFirst(std::string& text, const std::string& what, const std::string& by) {
    const std::size_t place = text.find(what);
    if (place != std::string::npos) {
        text.replace(place, what.size(), by);
    }
}

// The result of the call; "done" for operations that have none.
std::string runOperation(PathOperation operation, const Filepath& path) {
    switch (operation) {
        case PathOperation::kCreateDir:
            FileUtils::createDir(path);
            return "done";
        case PathOperation::kExists:
            return FileUtils::pathExists(path) ? "true" : "false";
        case PathOperation::kRead: {
            uint64 size = 0;
            const std::unique_ptr<char[]> bytes = FileUtils::readBinaryFileToBuffer(path, size);
            return bytes == nullptr ? "null" : std::string(bytes.get(), size);
        }
        case PathOperation::kSize:
            return std::to_string(FileUtils::getFileSize(path));
        case PathOperation::kWrite:
            FileUtils::writeStringToFile("text", path);
            return "done";
        case PathOperation::kWriteLine:
            FileUtils::writeStringToFile("a\nb", path);
            return "done";
        case PathOperation::kDelete:
            FileUtils::deleteFile(path);
            return "done";
        case PathOperation::kDeleteOpen: {
            const std::ofstream open = FileUtils::openFileToWriteBinaryData(path);
            FileUtils::deleteFile(path);
            return "done";
        }
    }
    throw std::logic_error("no such operation");
}

std::string resultOf(PathOperation operation, const Filepath& path) {
    try {
        return runOperation(operation, path);
    } catch (const FileException&) {
        return "throws";
    } catch (const std::range_error& error) {
        return error.what();
    }
}

// A directory as "name/", a file as "name=content".
std::string describe(const std::string& name, const std::string& what) {
    constexpr std::size_t kLabel = 6;  // of "file: "
    return what == kDirectoryInTree ? name + "/" : name + "=" + what.substr(kLabel);
}

std::string changesBetween(const FileTree& before, const FileTree& after) {
    std::string changes;
    for (const auto& [name, what] : after) {
        const auto old = before.find(name);
        if (old == before.end() || old->second != what) {
            changes += ", +" + describe(name, what);
        }
    }
    for (const auto& [name, what] : before) {
        if (after.count(name) == 0) {
            changes += ", -" + name;
        }
    }
    return changes;
}

}  // namespace

void fillDirectory() {
    fs::create_directory("folder");
    writeFile("file", "content");
    writeFile("folder/inner", "inner");
    writeFile("caf\u00E9", "composed");
    writeFile("名前", "in the first plane");
    writeFile("😀", "beyond the first plane");
    writeFile("locked", "kept");
    fs::permissions("locked", fs::perms::owner_read | fs::perms::group_read);
}

std::string outcomeOf(const PathCase& pathCase, const std::string& directory) {
    std::string path = pathCase.path;
    replaceFirst(path, "{drive}", hasWindowsPaths() ? directory.substr(0, 2) : "C:");
    replaceFirst(path, "{}", directory);
    const FileTree before = treeOf(".");
    const std::string result = resultOf(pathCase.operation, Filepath(path));
    return result + changesBetween(before, treeOf("."));
}

bool hasWindowsPaths() {
    return fs::path::preferred_separator == static_cast<fs::path::value_type>('\\');
}

}  // namespace VelmoraQuavin::testing
