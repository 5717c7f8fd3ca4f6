// The public headers include one another and the standard library, and nothing else. The targets
// quavin_public_headers_alone and quavin_c_header_alone check that each compiles alone.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> publicHeaders() {
    std::vector<fs::path> headers;
    for (const auto& entry : fs::recursive_directory_iterator(QUAVIN_PUBLIC_HEADERS)) {
        if (entry.is_regular_file()) {
            headers.push_back(entry.path());
        }
    }
    return headers;
}

// The operand of every #include of a header, with its quotes or brackets.
std::vector<std::string> includesOf(const fs::path& header) {
    std::vector<std::string> found;
    std::ifstream file(header);
    for (std::string line; std::getline(file, line);) {
        const std::size_t word = line.find("include");
        const std::size_t first = line.find_first_of("\"<", word);
        const bool directive = line.find_first_not_of(" \t") == line.find('#');
        if (directive && word != std::string::npos && first != std::string::npos) {
            found.push_back(line.substr(first, line.find_first_of("\">", first + 1) - first + 1));
        }
    }
    return found;
}

// The C interface stands by itself.
bool isOfC(const fs::path& header) {
    return header.filename() == "c.h";
}

TEST(PublicHeaders, TheCHeaderIncludesNoHeaderThatNeedsCpp) {
    EXPECT_THAT(includesOf(fs::path(QUAVIN_PUBLIC_HEADERS) / "c.h"),
                ::testing::UnorderedElementsAre("<stddef.h>", "<stdint.h>", "\"quavin/export.h\""));
    EXPECT_THAT(includesOf(fs::path(QUAVIN_PUBLIC_HEADERS) / "export.h"), ::testing::IsEmpty());
}

TEST(PublicHeaders, HeadersIncludeOnlyOneAnotherAndTheStandardLibrary) {
    ASSERT_FALSE(publicHeaders().empty());
    for (const fs::path& header : publicHeaders()) {
        for (const std::string& include : includesOf(header)) {
            const bool own = include.rfind("\"quavin/", 0) == 0;
            // Only headers of the C++ standard library have a name without folder and extension.
            const bool standard =
                include.front() == '<' && include.find_first_of("/.") == std::string::npos;
            const bool standardC = include == "<stddef.h>" || include == "<stdint.h>";
            EXPECT_TRUE(own || (isOfC(header) ? standardC : standard))
                << header.filename() << " includes " << include;
        }
    }
}

TEST(PublicHeaders, TheMainHeaderIncludesAllOthersOfCpp) {
    const fs::path all = fs::path(QUAVIN_PUBLIC_HEADERS) / "quavin.h";
    const auto included = includesOf(all);
    for (const fs::path& header : publicHeaders()) {
        if (header != all && !isOfC(header)) {
            EXPECT_THAT(included,
                        ::testing::Contains("\"quavin/" + header.filename().string() + '"'));
        }
    }
}

}  // namespace
