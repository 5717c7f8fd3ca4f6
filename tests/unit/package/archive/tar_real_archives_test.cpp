// Archives written by GNU tar, bsdtar, Python and git, compared with what those tools extract from
// them; tests/data/tar/make_archives.py generates both.

#include <gtest/gtest.h>

#include <string>

#include "support/case_name.h"
#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::CaseName;
using testing::IsOk;
using testing::listingOf;
using testing::readTarData;
using testing::TarExtraction;

class TarAcceptedArchives : public TarExtraction,
                            public ::testing::WithParamInterface<std::string> {};

TEST_P(TarAcceptedArchives, ExtractionMatchesTheOriginalTool) {
    EXPECT_THAT(to_.extract(readTarData("accepted/" + GetParam() + ".tar")), IsOk());
    EXPECT_EQ(listingOf(to_.tree()), readTarData("accepted/" + GetParam() + ".listing"));
    EXPECT_EQ(to_.result(), to_.text() + (GetParam() == "simple" ? "\\package/" : "\\tree/"));
}

TEST_P(TarAcceptedArchives, ExtractsAgainOverExistingFiles) {
    EXPECT_THAT(to_.extract(readTarData("accepted/" + GetParam() + ".tar")), IsOk());
    to_.setDestination(to_.text());
    EXPECT_THAT(to_.extract(readTarData("accepted/" + GetParam() + ".tar")), IsOk());
    EXPECT_EQ(listingOf(to_.tree()), readTarData("accepted/" + GetParam() + ".listing"));
}

INSTANTIATE_TEST_SUITE_P(Archives, TarAcceptedArchives,
                         ::testing::Values("bsdtar_default", "bsdtar_gnutar", "bsdtar_pax",
                                           "bsdtar_ustar", "bsdtar_v7", "git", "gnu_default",
                                           "gnu_gnu", "gnu_pax", "gnu_ustar", "gnu_v7",
                                           "python_gnu", "python_pax", "python_ustar", "simple"),
                         [](const auto& test) { return test.param; });

struct RefusedArchive {
    std::string name;
    STATUS_CODE code;
    std::string text;
};

class TarRefusedArchives : public TarExtraction,
                           public ::testing::WithParamInterface<RefusedArchive> {};

TEST_P(TarRefusedArchives, RefusalLeavesNothingBehind) {
    expectRefused(readTarData("refused/" + GetParam().name + ".tar"), GetParam().code,
                  GetParam().text);
}

std::string otherType(const std::string& entry, char type) {
    return "Archive entry " + entry + ": it is neither a file nor a directory (type \"" + type +
           "\")";
}

std::string tooLarge(const std::string& size) {
    return "Archive entry 1 (\"huge.bin\"): it needs " + size +
           " bytes of content, in whole blocks of 512, and 1024 are left in the archive";
}

INSTANTIATE_TEST_SUITE_P(
    Archives, TarRefusedArchives,
    ::testing::Values(
        RefusedArchive{"symbolic_link", TAR_UNSUPPORTED_ENTRY, otherType("2 (\"symbolic\")", '2')},
        RefusedArchive{"hard_link", TAR_UNSUPPORTED_ENTRY, otherType("2 (\"hard\")", '1')},
        RefusedArchive{"fifo", TAR_UNSUPPORTED_ENTRY, otherType("1 (\"fifo\")", '6')},
        RefusedArchive{"sparse_gnu", TAR_UNSUPPORTED_ENTRY, otherType("1 (\"sparse\")", 'S')},
        RefusedArchive{"sparse_pax_0_0", TAR_UNSUPPORTED_ENTRY,
                       "Archive entry 1 (\"sparse\"): it is a sparse file"},
        RefusedArchive{"sparse_pax_0_1", TAR_UNSUPPORTED_ENTRY,
                       "Archive entry 1 (\"./GNUSparseFile.0/sparse\"): it is a sparse file"},
        RefusedArchive{"sparse_pax_1_0", TAR_UNSUPPORTED_ENTRY,
                       "Archive entry 1 (\"./GNUSparseFile.0/sparse\"): it is a sparse file"},
        RefusedArchive{"huge_octal", INVALID_ARGUMENTS, tooLarge("8589934591")},
        RefusedArchive{"huge_binary", INVALID_ARGUMENTS, tooLarge("8589934592")},
        RefusedArchive{"huge_pax", INVALID_ARGUMENTS, tooLarge("8589934592")}),
    CaseName());

}  // namespace
}  // namespace VelmoraQuavin
