#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// Writes below one directory: paths are walked name by name from there, and no link is followed on
/// the way, also not one that somebody puts there meanwhile. (A directory that somebody moves away
/// while it is written to takes its new files along, and what is mounted below is below.)
///
/// Operations return why they failed, for people; an empty text where they went well. One thread at
/// a time.
class ConfinedDirectory {
public:
    /// Names from the directory down, UTF-8. None of them is empty, "." or "..", or holds a
    /// separator.
    using Names = std::vector<std::string>;

    /// Opens the directory, which may itself be reached through links; nothing where it is none.
    /// @throws std::range_error "bad conversion" where the path is not UTF-8.
    static std::optional<ConfinedDirectory> open(const String& path);
    ConfinedDirectory(ConfinedDirectory&& other) noexcept;
    ConfinedDirectory& operator=(ConfinedDirectory&& other) noexcept;
    ~ConfinedDirectory();

    /// Makes a directory and what is missing above it.
    std::string createDirectories(const Names& names);
    /// Writes a file and makes what directories are missing above it. It gets its name when it is
    /// whole, and replaces a file that is there by then; what cannot be written whole is removed.
    /// A process that is killed leaves at most a file ".quavin-..." in its directory, which the
    /// next one removes.
    /// @param names at least one.
    std::string writeFile(const Names& names, const void* content, std::uint64_t size);

private:
    class Implementation;

    explicit ConfinedDirectory(std::unique_ptr<Implementation> implementation);

    std::unique_ptr<Implementation> implementation_;
};

}  // namespace VelmoraQuavin::internal::platform
