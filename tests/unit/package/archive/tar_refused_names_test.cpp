// Names that could lead out of the destination, and others that are refused, wherever the archive
// stores them. Nothing is written then, not even the entries before them.

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::fileInTree;
using testing::FileTree;
using testing::gnuLongName;
using testing::IsOk;
using testing::paxHeader;
using testing::paxRecord;
using testing::tarDirectory;
using testing::tarEnd;
using testing::tarEntry;
using testing::TarExtraction;
using testing::tarFields;
using testing::TarFields;
using testing::tarFile;

struct RefusedName {
    std::string label;
    std::string name;
    std::string reason;
};

// Where an archive may store an entry's name.
struct NamePlacement {
    std::string label;
    std::string (*entry)(const std::string& name, char type);
};

std::string inTheHeader(const std::string& name, char type) {
    return tarEntry(tarFields(name, type));
}

// Splits the name at the first slash, which the reader puts back between prefix and name.
std::string inThePrefix(const std::string& name, char type) {
    const std::size_t slash = name.find('/', 1);
    if (slash == std::string::npos) {
        return inTheHeader(name, type);
    }
    TarFields fields = tarFields(name.substr(slash + 1), type);
    fields.prefix = name.substr(0, slash);
    return tarEntry(fields);
}

std::string inPaxRecords(const std::string& name, char type) {
    return paxHeader(paxRecord("path", name)) + inTheHeader("innocent", type);
}

std::string inALongName(const std::string& name, char type) {
    return gnuLongName(name) + inTheHeader("innocent", type);
}

class TarRefusedNames
    : public TarExtraction,
      public ::testing::WithParamInterface<std::tuple<RefusedName, NamePlacement>> {
protected:
    void expectRefusedAs(char type) {
        const auto& [refused, placement] = GetParam();
        expectRefused(tarDirectory("root/") + tarFile("root/file", "x") +
                          placement.entry(refused.name, type) + tarEnd(),
                      INVALID_ARGUMENTS,
                      "Archive entry \"" + refused.name + "\": " + refused.reason);
    }
};

TEST_P(TarRefusedNames, TheFileIsRefused) {
    expectRefusedAs('0');
}

TEST_P(TarRefusedNames, TheDirectoryIsRefused) {
    expectRefusedAs('5');
}

const std::string kTwoDots = "its name contains \"..\"";
const std::string kAbsolute = "its name is absolute";
const std::string kDrive = "its name begins with a drive letter";

INSTANTIATE_TEST_SUITE_P(
    Names, TarRefusedNames,
    ::testing::Combine(
        ::testing::Values(RefusedName{"TwoDotsFirst", "../x", kTwoDots},
                          RefusedName{"TwoDotsFirstWithBackslash", "..\\x", kTwoDots},
                          RefusedName{"TwoDotsAfterADot", "./../x", kTwoDots},
                          RefusedName{"TwoDotsInside", "root/../x", kTwoDots},
                          RefusedName{"TwoDotsFarUp", "root/../../../../x", kTwoDots},
                          RefusedName{"TwoDotsInsideWithBackslashes", "a\\..\\..\\x", kTwoDots},
                          RefusedName{"TwoDotsWithBoth", "root/..\\../x", kTwoDots},
                          RefusedName{"TwoDotsLast", "root/..", kTwoDots},
                          RefusedName{"TwoDotsLastWithSlash", "root/../", kTwoDots},
                          RefusedName{"TwoDotsAlone", "..", kTwoDots},
                          RefusedName{"Absolute", "/etc/x", kAbsolute},
                          RefusedName{"AbsoluteWithBackslash", "\\x", kAbsolute},
                          RefusedName{"ServerPath", "\\\\server\\share\\x", kAbsolute},
                          RefusedName{"Root", "/", kAbsolute}, RefusedName{"Drive", "C:x", kDrive},
                          RefusedName{"DriveAlone", "C:", kDrive},
                          RefusedName{"DriveAfterADot", "./C:x", kDrive},
                          RefusedName{"LowercaseDrive", "c:/x", kDrive},
                          RefusedName{"DriveWithBackslash", "C:\\x", kDrive}),
        ::testing::Values(NamePlacement{"InTheHeader", inTheHeader},
                          NamePlacement{"InThePrefix", inThePrefix},
                          NamePlacement{"InPaxRecords", inPaxRecords},
                          NamePlacement{"InALongName", inALongName})),
    [](const auto& test) { return std::get<0>(test.param).label + std::get<1>(test.param).label; });

class TarRefusedName : public TarExtraction {};

TEST_F(TarRefusedName, AnAbsolutePathBesideTheDestinationIsRefused) {
    const std::string name = (to_.outer() / "beside").u8string();
    const std::string text = "Archive entry \"" + name + "\": ";
    expectRefused(tarFile(name, "x") + tarEnd(), INVALID_ARGUMENTS,
                  ::testing::AnyOf(text + kAbsolute, text + kDrive));
}

TEST_F(TarRefusedName, ANameJoinedWithItsPrefixIsRefused) {
    TarFields fields = tarFields("../x");
    fields.prefix = "root";
    expectRefused(tarEntry(fields) + tarEnd(), INVALID_ARGUMENTS,
                  R"(Archive entry "root/../x": its name contains "..")");
}

TEST_F(TarRefusedName, AnEmptyNameIsRefused) {
    expectRefused(gnuLongName("") + tarFile("innocent") + tarEnd(), INVALID_ARGUMENTS,
                  "Archive entry \"\": it has no name");
}

TEST_F(TarRefusedName, InvalidUtf8IsRefused) {
    expectRefused(tarFile("b\xFFz", "x") + tarEnd(), INVALID_ARGUMENTS,
                  "Archive entry \"b?z\": its name is not UTF-8");
    expectRefused(inPaxRecords("\xC0\xAE\xC0\xAE/x", '0') + tarEnd(), INVALID_ARGUMENTS,
                  ::testing::EndsWith(": its name is not UTF-8"));
}

TEST_F(TarRefusedName, AnOverlongNameIsRefused) {
    const std::string name(4097, 'n');
    const std::string text =
        "Archive entry \"" + std::string(200, 'n') + "...\": its name is longer than 4096 bytes";
    expectRefused(inPaxRecords(name, '0') + tarEnd(), INVALID_ARGUMENTS, text);
    expectRefused(inALongName(name, '0') + tarEnd(), INVALID_ARGUMENTS, text);
}

TEST_F(TarRefusedName, MessagesShowNoControlCharacters) {
    expectRefused(tarFile("../\x1B[2J\n\x7F") + tarEnd(), INVALID_ARGUMENTS,
                  R"(Archive entry "../?[2J??": its name contains "..")");
}

TEST_F(TarRefusedName, NamesAfterTheEndAreIgnored) {
    EXPECT_THAT(to_.extract(tarFile("good", "x") + tarEnd() + tarFile("../x", "x")), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"good", fileInTree("x")}}));
}

}  // namespace
}  // namespace VelmoraQuavin
