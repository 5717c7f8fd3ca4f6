// Names that have another meaning on Windows, and files that are open elsewhere.

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/windows/file_handle.h"
#include "support/system.h"
#include "unit/platform/confined_directory_fixture.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using testing::fileInTree;
using testing::FileTree;
using testing::openFiles;

const std::string kImpossible = "its name is not possible on this system";

TEST_F(ConfinedDirectoryTest, CreatesNothingWithAnImpossibleName) {
    for (const std::string name : {"NUL", "nul.txt", "CONIN$", "file:stream", "a|b", "dot."}) {
        EXPECT_EQ(write({name}, "x"), kImpossible) << name;
        EXPECT_EQ(confined_.createDirectories({name}), kImpossible) << name;
        EXPECT_EQ(write({name, "file"}, "x"), kImpossible) << name;
    }
    EXPECT_EQ(tree(), FileTree());
}

TEST_F(ConfinedDirectoryTest, CreatesTheParentsOfAnImpossibleName) {
    EXPECT_EQ(write({"folder", "NUL"}, "x"), kImpossible);
    EXPECT_EQ(tree(), (FileTree{{"folder", testing::kDirectoryInTree}}));
}

TEST_F(ConfinedDirectoryTest, ContinuesInTheRightPlaceAfterAnImpossibleName) {
    EXPECT_EQ(confined_.createDirectories({"a"}), "");
    EXPECT_EQ(confined_.createDirectories({"b", "NUL"}), kImpossible);
    EXPECT_EQ(write({"file"}, "x"), "");
    EXPECT_EQ(tree().at("file"), fileInTree("x"));
}

TEST_F(ConfinedDirectoryTest, IgnoresTheCaseOfNames) {
    EXPECT_EQ(write({"Folder", "File"}, "old"), "");
    EXPECT_EQ(write({"FOLDER", "FILE"}, "new"), "");
    EXPECT_EQ(temp_.read("root/folder/file"), "new");
    EXPECT_EQ(tree().size(), 2U);
}

TEST_F(ConfinedDirectoryTest, KeepsAFileThatIsOpenElsewhere) {
    temp_.write("root/file", "old");
    {
        const FileHandle file(::CreateFileW((root() / "file").c_str(), GENERIC_READ, 0, nullptr,
                                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        ASSERT_TRUE(file);
        const std::size_t before = openFiles();
        EXPECT_EQ(write({"file"}, "new").find("the file cannot be written: "), 0U);
        EXPECT_EQ(openFiles(), before);
    }
    EXPECT_EQ(tree(), (FileTree{{"file", fileInTree("old")}}));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
