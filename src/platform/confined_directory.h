#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// Writes only below one directory: paths are walked name by name from there, and no link is ever
/// followed, not even one created in the meantime. (If a directory is moved away while it is being
/// written to, its new files move with it, and anything mounted below the directory counts as part
/// of it.)
///
/// Operations return a human-readable reason if they fail, and an empty string if they succeed. Use
/// it from one thread at a time.
class ConfinedDirectory {
public:
    /// Names from the directory down, in UTF-8. None is empty, "." or "..", and none contains a
    /// separator.
    using Names = std::vector<std::string>;

    /// Opens the directory, which may itself be reached through links; nothing if it cannot be
    /// opened as a directory.
    /// @throws std::range_error "bad conversion" if the path is not UTF-8.
    static std::optional<ConfinedDirectory> open(const String& path);
    ConfinedDirectory(ConfinedDirectory&& other) noexcept;
    ConfinedDirectory& operator=(ConfinedDirectory&& other) noexcept;
    ~ConfinedDirectory();

    /// Creates a directory and any missing parents.
    std::string createDirectories(const Names& names);
    /// Writes a file, creating any missing parent directories. The file gets its name once it is
    /// complete, replacing any existing file; an incomplete one is removed. A killed process leaves
    /// at most a file ".quavin-..." in that directory, which the next process removes.
    /// @param names at least one name.
    std::string writeFile(const Names& names, const void* content, std::uint64_t size);

    class Implementation;

private:
    explicit ConfinedDirectory(std::unique_ptr<Implementation> implementation);

    std::unique_ptr<Implementation> implementation_;
};

}  // namespace VelmoraQuavin::internal::platform
