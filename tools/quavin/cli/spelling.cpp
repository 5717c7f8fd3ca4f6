#include "tools/quavin/cli/spelling.h"

#include <algorithm>
#include <cstddef>

#include "tools/quavin/io/path_text.h"

namespace quavin_tool {
namespace {

constexpr std::size_t kLongestName = 40;
constexpr std::size_t kShortestBeginning = 3;

// The number of letters added, left out, replaced, or swapped with their neighbour.
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> steps(a.size() + 1,
                                                std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                steps[i][j] = i + j;
                continue;
            }
            const std::size_t replaced = steps[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            steps[i][j] = std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1, replaced});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
            }
        }
    }
    return steps[a.size()][b.size()];
}

bool isBeginning(std::string_view beginning, std::string_view whole) {
    return beginning.size() >= kShortestBeginning && whole.substr(0, beginning.size()) == beginning;
}

}  // namespace

std::string closestName(std::string_view typed, const std::vector<std::string>& names) {
    if (typed.empty() || typed.size() > kLongestName) {
        return "";
    }
    const std::string word = toAsciiLower(typed);
    std::string closest;
    std::size_t least = 0;
    for (const std::string& name : names) {
        const std::size_t tolerated = name.size() < 5 ? 1 : 2;
        std::size_t difference = distance(word, name);
        if (isBeginning(word, name) || isBeginning(name, word)) {
            difference = std::min(difference, tolerated);
        }
        if (difference <= tolerated && (closest.empty() || difference < least)) {
            closest = name;
            least = difference;
        }
    }
    return closest;
}

}  // namespace quavin_tool
