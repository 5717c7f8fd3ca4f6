#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quavin_tool {

/// A problem with a package, and what to do about it.
struct Finding {
    bool isError;  ///< The package cannot be used; otherwise a warning.
    std::string where;
    std::string what;
    std::string advice;
};

/// All findings, in the order of the checks.
class Findings {
public:
    void error(std::string where, std::string what, std::string advice) {
        all_.push_back({true, std::move(where), std::move(what), std::move(advice)});
    }
    void warning(std::string where, std::string what, std::string advice) {
        all_.push_back({false, std::move(where), std::move(what), std::move(advice)});
    }
    bool hasErrors() const {
        return std::any_of(all_.begin(), all_.end(),
                           [](const Finding& finding) { return finding.isError; });
    }
    /// Whether there is one about `where`.
    bool concern(std::string_view where) const {
        return std::any_of(all_.begin(), all_.end(),
                           [where](const Finding& finding) { return finding.where == where; });
    }
    const std::vector<Finding>& all() const { return all_; }

private:
    std::vector<Finding> all_;
};

}  // namespace quavin_tool
