#include "engine/cache/compiled_cache.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <limits>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "core/diagnostics.h"
#include "engine/cache/entry_header.h"
#include "engine/cache/entry_removal.h"
#include "platform/file_system.h"
#include "platform/input_file.h"
#include "platform/private_file.h"
#include "quavin/files.h"

namespace VelmoraQuavin::internal {
namespace {

namespace fs = std::filesystem;

// Whether there is nothing under that name, not even a link that leads nowhere.
bool isAbsent(const String& path) {
    std::error_code ignored;
    return fs::symlink_status(platform::standardPath(path), ignored).type() ==
           fs::file_type::not_found;
}

// The bytes of an opened entry, unless they are not what they should be.
std::optional<EntryBuffer> readEntry(platform::InputFile& file, const EntryName& name,
                                     const CacheSeal& seal, std::string& problem) {
    const char* const damaged = "is damaged, or not the entry that its name says";
    std::array<unsigned char, EntryBuffer::kHeaderSize> header{};
    if (file.size() < header.size() ||
        file.size() > std::numeric_limits<std::size_t>::max() - header.size()) {
        problem = damaged;
        return std::nullopt;
    }
    // Before there is memory for the rest: a file of another kind may be of any size.
    const auto size = static_cast<std::size_t>(file.size()) - header.size();
    std::uint64_t got = 0;
    problem = file.read(header.data(), header.size(), got);
    const HeaderStart start = headerStart(seal.kind(), name, size);
    if (problem.empty() &&
        (got != header.size() || !std::equal(start.begin(), start.end(), header.begin()))) {
        problem = damaged;
    }
    if (!problem.empty()) {
        return std::nullopt;
    }
    EntryBuffer buffer = seal.makeBuffer(size);
    buffer.resize(size);
    SealValue value{};
    std::copy(header.begin() + start.size(), header.end(), value.begin());
    problem = file.read(buffer.content(), size, got);
    if (problem.empty() &&
        (got != size || !seal.open(name, start, buffer.content(), size, value))) {
        problem = damaged;
    }
    return problem.empty() ? std::optional(std::move(buffer)) : std::nullopt;
}

}  // namespace

CompiledCache::CompiledCache(String directory, std::uint64_t sizeLimit)
    : directory_(std::move(directory)), sizeLimit_(sizeLimit) {}

String CompiledCache::pathOf(const EntryName& name) const {
    return Filepath(directory_).append(name.fileName()).c_str();
}

std::optional<EntryBuffer> CompiledCache::find(const EntryName& name, const CacheSeal& seal,
                                               std::string& problem) const noexcept {
    problem.clear();
    try {
        return read(name, seal, problem);
    } catch (...) {
        // Memory ran out, or the path is one that store() reports.
        problem.clear();
        return std::nullopt;
    }
}

std::optional<EntryBuffer> CompiledCache::read(const EntryName& name, const CacheSeal& seal,
                                               std::string& problem) const {
    const String path = pathOf(name);
    std::optional<EntryBuffer> buffer;
    std::optional<platform::InputFile> file = platform::InputFile::open(path, problem);
    if (!file.has_value() && !isAbsent(path)) {
        // Another process may have stored it just after the first attempt.
        file = platform::InputFile::open(path, problem);
    } else if (!file.has_value()) {
        problem.clear();
    }
    if (file.has_value()) {
        buffer = readEntry(*file, name, seal, problem);
    }
    if (!problem.empty()) {
        problem = inQuotes(path) + " " + problem;
    }
    return buffer;
}

std::string CompiledCache::store(const EntryName& name, const CacheSeal& seal,
                                 EntryBuffer buffer) const noexcept {
    try {
        return write(name, seal, buffer);
    } catch (const std::range_error&) {
        return "path not UTF-8";  // like the next one, short enough to need no memory
    } catch (...) {
        return "out of memory";
    }
}

std::string CompiledCache::write(const EntryName& name, const CacheSeal& seal,
                                 EntryBuffer& buffer) const {
    const String path = pathOf(name);
    const std::size_t size = EntryBuffer::kHeaderSize + buffer.size();
    if (sizeLimit_ != 0 && size > sizeLimit_) {
        return inQuotes(path) + " would take " + std::to_string(size) +
               " bytes, more than the limit of " + std::to_string(sizeLimit_);
    }
    const HeaderStart start = headerStart(seal.kind(), name, buffer.size());
    SealValue value{};
    if (!seal.close(name, start, buffer.content(), buffer.size(), value)) {
        return inQuotes(path) + " cannot be sealed";
    }
    std::copy(value.begin(), value.end(), std::copy(start.begin(), start.end(), buffer.header()));
    const std::string problem =
        platform::replaceFile(path, buffer.header(), size, platform::Readers::kOwner);
    if (!problem.empty()) {
        return inQuotes(path) + " " + problem;
    }
    return sizeLimit_ == 0 ? "" : removeOldEntries(directory_, name, sizeLimit_ - size);
}

}  // namespace VelmoraQuavin::internal
