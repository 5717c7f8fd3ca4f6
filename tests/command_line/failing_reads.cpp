// Preloaded into the command line, this makes the file named by an environment variable unreadable.

#include <cstdlib>
#include <optional>

#include "support/unreadable_file.h"

namespace {

struct FailingReads {
    FailingReads() {
        if (const char* const path = std::getenv("QUAVIN_UNREADABLE")) {
            file.emplace(path);
        }
    }

    std::optional<VelmoraQuavin::testing::UnreadableFile> file;
};

const FailingReads failingReads;

}  // namespace
