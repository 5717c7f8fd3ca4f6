// Names at the limits of depth and length.

#include <gtest/gtest.h>

#include <string>

#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::fileInTree;
using testing::FileTree;
using testing::IsOk;
using testing::IsStatusWith;
using testing::paxHeader;
using testing::paxRecord;
using testing::tarEnd;
using testing::TarExtraction;
using testing::tarFile;

constexpr int kDeepest = 128;
constexpr std::size_t kLongestPart = 255;

std::string nameOfParts(int count) {
    std::string name;
    for (int part = 1; part < count; ++part) {
        name += "d/";
    }
    return name + "file";
}

class TarDepth : public TarExtraction {
protected:
    QuavinStatus extractNamed(const std::string& name) {
        return to_.extract(tarFile("before", "x") + paxHeader(paxRecord("path", name)) +
                           tarFile("short", "deep") + tarEnd());
    }
};

TEST_F(TarDepth, TheDeepestNameIsExtracted) {
    ASSERT_THAT(extractNamed(nameOfParts(kDeepest)), IsOk());
    EXPECT_EQ(to_.tree().at(nameOfParts(kDeepest)), fileInTree("deep"));
}

TEST_F(TarDepth, ADeeperNameIsRefusedBeforeAnythingIsWritten) {
    EXPECT_THAT(extractNamed(nameOfParts(kDeepest + 1)),
                IsStatusWith(INVALID_ARGUMENTS,
                             ::testing::HasSubstr("\": its name has more than 128 parts")));
    EXPECT_EQ(to_.tree(), FileTree());
}

TEST_F(TarDepth, TheLongestPartIsExtracted) {
    const std::string part(kLongestPart, 'n');
    ASSERT_THAT(extractNamed(part + "/" + part), IsOk());
    EXPECT_EQ(to_.tree().at(part + "/" + part), fileInTree("deep"));
}

TEST_F(TarDepth, ALongerPartIsRefusedBeforeAnythingIsWritten) {
    const std::string part(kLongestPart + 1, 'n');
    for (const std::string& name : {part, "a/" + part, part + "/b"}) {
        EXPECT_THAT(
            extractNamed(name),
            IsStatusWith(INVALID_ARGUMENTS,
                         ::testing::HasSubstr("\": a part of its name is longer than 255 bytes")));
    }
    EXPECT_EQ(to_.tree(), FileTree());
}

}  // namespace
}  // namespace VelmoraQuavin
