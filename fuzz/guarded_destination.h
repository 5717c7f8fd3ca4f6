#pragma once

#include <set>
#include <string>

#include "quavin/files.h"
#include "support/temp_directory.h"

namespace quavin_fuzz {

/// An empty directory to extract into, surrounded by directories and files that extraction must
/// not change.
class GuardedDestination {
public:
    /// Whether the destination contains links that lead outside: only on POSIX.
    enum class Links { kNone, kOutside };

    explicit GuardedDestination(Links links);

    VelmoraQuavin::Filepath path() const;
    /// Ends the program if anything outside has changed; then empties the destination.
    void checkAndEmpty() const;

private:
    void createDestination() const;

    VelmoraQuavin::testing::TempDirectory around_;
    Links links_;
    std::set<std::string> namesAtFirst_;
};

}  // namespace quavin_fuzz
