// The public headers include one another and the C++ standard library, and nothing else. The target
// quavin_public_headers_alone checks that each compiles alone.

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

TEST(PublicHeaders, HeadersIncludeOnlyOneAnotherAndTheStandardLibrary) {
    ASSERT_FALSE(publicHeaders().empty());
    for (const fs::path& header : publicHeaders()) {
        for (const std::string& include : includesOf(header)) {
            const bool own = include.rfind("\"quavin/", 0) == 0;
            // Only headers of the C++ standard library have a name without folder and extension.
            const bool standard =
                include.front() == '<' && include.find_first_of("/.") == std::string::npos;
            EXPECT_TRUE(own || standard) << header.filename() << " includes " << include;
        }
    }
}

TEST(PublicHeaders, TheMainHeaderIncludesAllOthers) {
    const fs::path all = fs::path(QUAVIN_PUBLIC_HEADERS) / "quavin.h";
    const auto included = includesOf(all);
    for (const fs::path& header : publicHeaders()) {
        if (header != all) {
            EXPECT_THAT(included,
                        ::testing::Contains("\"quavin/" + header.filename().string() + '"'));
        }
    }
}

}  // namespace
