// The same paths on every system. What comes of each stands in the table of path_cases.h.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "support/case_name.h"
#include "support/temp_directory.h"
#include "unit/package/path_cases.h"

namespace VelmoraQuavin::testing {

void PrintTo(const PathCase& pathCase, std::ostream* stream) {
    *stream << pathCase.path.substr(0, 80);
}

namespace {

namespace fs = std::filesystem;

// Works in a new directory that fillDirectory() has filled.
class PathCases : public ::testing::TestWithParam<PathCase> {
protected:
    PathCases() : before_(fs::current_path()) {
        fs::current_path(directory_.path());
        fillDirectory();
    }
    ~PathCases() override {
        std::error_code ignored;
        fs::permissions("locked", fs::perms::owner_all, ignored);
        fs::current_path(before_);
    }

    TempDirectory directory_;
    fs::path before_;
};

const std::string& expectedHere(const PathCase& pathCase) {
    return hasWindowsPaths() ? pathCase.windows : pathCase.posix;
}

// Those of which something can be expected here.
std::vector<PathCase> casesHere() {
    std::vector<PathCase> here;
    for (const PathCase& pathCase : pathCases()) {
        if (!expectedHere(pathCase).empty()) {
            here.push_back(pathCase);
        }
    }
    return here;
}

TEST_P(PathCases, EndAsTheTableSays) {
    EXPECT_EQ(outcomeOf(GetParam(), directory_.text()), expectedHere(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Table, PathCases, ::testing::ValuesIn(casesHere()), CaseName());

TEST(PathCaseTable, NamesADifferenceWhereTheSystemsDisagree) {
    for (const PathCase& pathCase : pathCases()) {
        EXPECT_EQ(pathCase.posix != pathCase.windows, !pathCase.difference.empty())
            << pathCase.name;
    }
}

// The keys that begin the lines of the section's table.
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

TEST(PathCaseTable, IsInStepWithTheDocumentedDifferences) {
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
