#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <string>

namespace VelmoraQuavin::testing {

// The framework's own matchers know no more than its simple patterns on systems without POSIX ones.

/// The whole text is as the regular expression says.
MATCHER_P(MatchesPattern, pattern, "") {
    return std::regex_match(arg, std::regex(pattern));
}

/// Some part of the text is as the regular expression says.
MATCHER_P(ContainsPattern, pattern, "") {
    return std::regex_search(arg, std::regex(pattern));
}

}  // namespace VelmoraQuavin::testing
