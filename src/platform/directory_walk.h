#pragma once

#include <algorithm>
#include <string>
#include <utility>

#include "platform/confined_directory.h"

namespace VelmoraQuavin::internal::platform {

/// Walks from an open directory to directories below it, name by name, and remembers where it is:
/// archive entries are grouped by directory, so most of them find theirs already current.
/// @tparam Handle owns an open directory, or none, in which case it converts to false.
template <typename Handle>
class DirectoryWalk {
public:
    using Name = ConfinedDirectory::Names::const_iterator;

    explicit DirectoryWalk(Handle root) : root_(std::move(root)) {}

    /// The current directory: the root at first and after a failure.
    const Handle& current() const { return current_ ? current_ : root_; }

    /// Makes the directory with these names below the root the current one.
    /// @param step called with a directory, a name in it and a handle that receives the opened
    ///     directory; returns the reason if it fails, an empty string if not.
    /// @return the reason given by the step that failed; empty if none did.
    template <typename Step>
    std::string enter(Name begin, Name end, const Step& step) {
        if (std::equal(begin, end, currentNames_.begin(), currentNames_.end())) {
            return "";
        }
        current_ = Handle();
        currentNames_.clear();
        Handle reached;
        for (auto name = begin; name != end; ++name) {
            Handle next;
            std::string problem = step(reached ? reached : root_, *name, next);
            if (!problem.empty()) {
                return problem;
            }
            reached = std::move(next);
        }
        current_ = std::move(reached);
        currentNames_.assign(begin, end);
        return "";
    }

private:
    Handle root_;
    Handle current_;  // none: the root
    ConfinedDirectory::Names currentNames_;
};

}  // namespace VelmoraQuavin::internal::platform
