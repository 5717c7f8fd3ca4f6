#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace quavin_tool {

/// Something that is wrong with a package, and what to do about it.
struct Finding {
    bool isError;  ///< It keeps the package from being used; otherwise it only surprises.
    std::string where;
    std::string what;
    std::string advice;
};

/// Everything that was found, in the order of the checks.
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
    const std::vector<Finding>& all() const { return all_; }

private:
    std::vector<Finding> all_;
};

}  // namespace quavin_tool
