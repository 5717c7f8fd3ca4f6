#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

#include "platform/confined_directory.h"
#include "support/file_tree.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {

/// A directory to write into, with an empty one beside it.
class ConfinedDirectoryTest : public ::testing::Test {
protected:
    using Names = ConfinedDirectory::Names;

    ConfinedDirectoryTest() : confined_(open(temp_)) {}

    static ConfinedDirectory open(const testing::TempDirectory& temp) {
        std::filesystem::create_directory(temp.path() / "root");
        std::filesystem::create_directory(temp.path() / "outside");
        return std::move(ConfinedDirectory::open(temp.entry("root")).value());
    }
    std::string write(const Names& names, const std::string& content) {
        return confined_.writeFile(names, content.data(), content.size());
    }
    std::filesystem::path root() const { return temp_.path() / "root"; }
    testing::FileTree tree() const { return testing::treeOf(root()); }
    bool outsideIsEmpty() const { return std::filesystem::is_empty(temp_.path() / "outside"); }

    testing::TempDirectory temp_;
    ConfinedDirectory confined_;
};

}  // namespace VelmoraQuavin::internal::platform
