#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <string>

namespace VelmoraQuavin::testing {

// On systems without POSIX regular expressions, the framework's own matchers support only simple
// ones.

/// The regular expression matches the whole text.
MATCHER_P(MatchesPattern, pattern, "") {
    return std::regex_match(arg, std::regex(pattern));
}

/// The regular expression matches some part of the text.
MATCHER_P(ContainsPattern, pattern, "") {
    return std::regex_search(arg, std::regex(pattern));
}

}  // namespace VelmoraQuavin::testing
