#pragma once

#include <algorithm>
#include <string>
#include <utility>

#include "platform/confined_directory.h"

namespace VelmoraQuavin::internal::platform {

/// Goes from an open directory to directories below it, name by name, and stays where it has got
/// to: entries of an archive come directory by directory, so that most of them find theirs current.
/// @tparam Handle owns an open directory, or none and is false then.
template <typename Handle>
class DirectoryWalk {
public:
    using Name = ConfinedDirectory::Names::const_iterator;

    explicit DirectoryWalk(Handle root) : root_(std::move(root)) {}

    /// Where it has got to: the root in the beginning and after a failure.
    const Handle& current() const { return current_ ? current_ : root_; }

    /// Makes the directory with these names below the root the current one.
    /// @param step called with a directory, a name in it and the handle to open the directory of
    ///     that name with; returns why it failed, nothing where it went well.
    /// @return what the step that failed has returned.
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
