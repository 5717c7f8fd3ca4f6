// The same paths on every system. The expected outcomes are in the table that path_cases.h
// describes.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "support/case_name.h"
#include "support/temp_directory.h"
#include "unit/package/path/path_cases.h"

namespace VelmoraQuavin::testing {
namespace {

namespace fs = std::filesystem;

// Makes a new directory, filled by fillDirectory(), the working directory.
class FilledDirectory {
public:
    FilledDirectory() : before_(fs::current_path()) {
        fs::current_path(directory_.path());
        fillDirectory();
    }
    FilledDirectory(const FilledDirectory&) = delete;
    FilledDirectory& operator=(const FilledDirectory&) = delete;
    ~FilledDirectory() {
        std::error_code ignored;
        fs::permissions("locked", fs::perms::owner_all, ignored);
        fs::current_path(before_, ignored);
    }

    std::string text() const { return directory_.text(); }

private:
    TempDirectory directory_;
    fs::path before_;
};

// A few hundred cases are a handful of tests: under wine, starting a program takes longer than they
// do.
struct Group {
    const char* name;
    std::vector<PathCase> (*cases)();
};

class PathCases : public ::testing::TestWithParam<Group> {};

TEST_P(PathCases, OutcomesMatchTheTable) {
    for (const PathCase& pathCase : GetParam().cases()) {
        const std::string& expected = hasWindowsPaths() ? pathCase.windows : pathCase.posix;
        if (!expected.empty()) {
            const FilledDirectory directory;
            EXPECT_EQ(outcomeOf(pathCase, directory.text()), expected) << pathCase.name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Table, PathCases,
                         ::testing::Values(Group{"Text", pathTextCases},
                                           Group{"Names", pathNameCases},
                                           Group{"Lengths", pathLengthCases},
                                           Group{"Systems", pathSystemCases}),
                         CaseName());

TEST(PathCaseTable, CaseNamesAreUnique) {
    std::set<std::string> names;
    for (const PathCase& pathCase : pathCases()) {
        EXPECT_TRUE(names.insert(pathCase.name).second) << pathCase.name;
    }
}

TEST(PathCaseTable, CasesNameADifferenceOnlyIfTheSystemsDisagree) {
    for (const PathCase& pathCase : pathCases()) {
        EXPECT_EQ(pathCase.posix != pathCase.windows, !pathCase.difference.empty())
            << pathCase.name;
    }
}

// The keys in the first column of the section's table.
std::set<std::string> documentedDifferences() {
    std::ifstream page(fs::u8path(QUAVIN_TEST_DATA "/../../docs/porting.md"));
    const std::regex keyOfRow(R"(\| `([a-z-]+)` \|.*)");
    std::set<std::string> keys;
    bool inSection = false;
    for (std::string line; std::getline(page, line);) {
        if (!line.empty() && line[0] == '#') {
            inSection = line == "### Where POSIX and Windows differ";
        }
        std::smatch found;
        if (inSection && std::regex_match(line, found, keyOfRow)) {
            keys.insert(found[1]);
        }
    }
    return keys;
}

TEST(PathCaseTable, DifferencesMatchTheDocumentation) {
    std::set<std::string> used;
    for (const PathCase& pathCase : pathCases()) {
        if (!pathCase.difference.empty()) {
            used.insert(pathCase.difference);
        }
    }
    EXPECT_EQ(used, documentedDifferences());
}

}  // namespace
}  // namespace VelmoraQuavin::testing
