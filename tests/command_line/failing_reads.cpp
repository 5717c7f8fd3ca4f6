// Loaded into the command line before the C library: it cannot read the file that a variable of the
// environment names.

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
