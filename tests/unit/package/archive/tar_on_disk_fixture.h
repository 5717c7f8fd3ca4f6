#pragma once

#include <string>

#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin::testing {

/// Tests of what is in an archive's way in the destination.
class TarOnDisk : public TarExtraction {
protected:
    /// Expects the entries before the obstructed one to be written, those after it not, and nothing
    /// else to change.
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
