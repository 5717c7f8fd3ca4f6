#include "package/source/sized_file.h"

#include <cstring>
#include <utility>

#include "core/diagnostics.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {
namespace {

[[noreturn]] void fail(const Filepath& path, const std::string& problem) {
    diagnose([&] { return "reading the file " + inQuotes(path.c_str()) + ": it " + problem; });
    throw FileException("File error!");
}

}  // namespace

SizedFile::SizedFile(Filepath path, platform::InputFile file)
    : path_(std::move(path)), file_(std::move(file)) {}

std::optional<SizedFile> SizedFile::tryOpen(const Filepath& path, std::string& problem) {
    std::optional<platform::InputFile> file = platform::InputFile::open(path.c_str(), problem);
    if (!file.has_value()) {
        return std::nullopt;
    }
    return SizedFile(path, std::move(*file));
}

SizedFile SizedFile::open(const Filepath& path) {
    std::string problem;
    std::optional<SizedFile> file = tryOpen(path, problem);
    if (!file.has_value()) {
        fail(path, problem);
    }
    return std::move(*file);
}

std::string SizedFile::readOrZero(char* buffer, uint64 count) {
    uint64 got = 0;
    std::string problem = file_.read(buffer, count, got);
    if (got < count) {
        std::memset(buffer + got, 0, count - got);
    }
    return problem;
}

bool SizedFile::tryRead(char* buffer, std::string& problem) {
    problem = readOrZero(buffer, size());
    return problem.empty();
}

void SizedFile::read(char* buffer, uint64 count) {
    const std::string problem = readOrZero(buffer, count);
    if (!problem.empty()) {
        fail(path_, problem);
    }
}

platform::MappedFile SizedFile::map() const {
    std::string problem;
    std::optional<platform::MappedFile> mapped = file_.map(problem);
    if (!mapped.has_value()) {
        fail(path_, problem);
    }
    return std::move(*mapped);
}

}  // namespace VelmoraQuavin::internal
