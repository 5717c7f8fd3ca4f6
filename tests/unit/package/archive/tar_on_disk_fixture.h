#pragma once

#include <string>

#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin::testing {

/// Tests of what lies in an archive's way in the destination.
class TarOnDisk : public TarExtraction {
protected:
    /// Expects that entries in front of the one in whose way something is are written, those behind
    /// it are not, and nothing else changes.
    void expectStops(const std::string& entry, const std::string& text) {
        FileTree expected = to_.all();
        expected["level/destination/before"] = fileInTree("written");
        EXPECT_THAT(
            to_.extract(tarFile("before", "written") + entry + tarFile("behind") + tarEnd()),
            IsStatus(FILE_ERROR, text));
        EXPECT_EQ(to_.all(), expected);
        EXPECT_EQ(to_.result(), to_.text());
    }
    std::filesystem::path inside(const std::string& name) const { return to_.path() / name; }
};

}  // namespace VelmoraQuavin::testing
