#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "quavin/files.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin {
namespace {

// A directory with one file and one directory in it.
class FileUtilsPathExists : public ::testing::Test {
protected:
    FileUtilsPathExists() {
        directory_.write("file", "content");
        std::filesystem::create_directory(directory_.path() / "folder");
    }

    bool exists(const std::string& name) const {
        return FileUtils::pathExists(Filepath(directory_.entry(name)));
    }

    testing::TempDirectory directory_;
};

TEST_F(FileUtilsPathExists, SeesFilesAndDirectoriesAlike) {
    EXPECT_TRUE(exists("file"));
    EXPECT_TRUE(exists("folder"));
}

TEST_F(FileUtilsPathExists, AnswersFalseForAMissingEntryOfAnExistingDirectory) {
    EXPECT_FALSE(exists("missing"));
    EXPECT_FALSE(exists("folder\\missing"));
}

TEST_F(FileUtilsPathExists, AnswersTrueUnderAMissingDirectory) {
    EXPECT_TRUE(exists("missing\\file"));
    EXPECT_TRUE(exists("folder\\missing\\file"));
}

TEST_F(FileUtilsPathExists, AnswersTrueUnderAFile) {
    EXPECT_TRUE(exists("file\\child"));
}

TEST_F(FileUtilsPathExists, AnswersTrueForTheEmptyPath) {
    EXPECT_TRUE(FileUtils::pathExists(Filepath()));
}

TEST_F(FileUtilsPathExists, AnswersTrueForTheRoot) {
    EXPECT_TRUE(FileUtils::pathExists(Filepath("\\")));
    EXPECT_TRUE(FileUtils::pathExists(Filepath("/")));
}

TEST_F(FileUtilsPathExists, DropsTrailingSeparatorsOfBothKinds) {
    for (const std::string separators : {"\\", "/", "\\\\", "//", "/\\", "\\/"}) {
        EXPECT_TRUE(exists("folder" + separators)) << separators;
        EXPECT_FALSE(exists("missing" + separators)) << separators;
        EXPECT_TRUE(exists("missing\\child" + separators)) << separators;
    }
}

TEST_F(FileUtilsPathExists, AcceptsDoubledSeparatorsInside) {
    EXPECT_TRUE(exists("folder\\\\..\\file"));
    EXPECT_FALSE(exists("folder\\\\missing"));
}

TEST_F(FileUtilsPathExists, LooksForBareNamesInTheCurrentDirectory) {
    EXPECT_FALSE(FileUtils::pathExists(Filepath("no-such-entry-here")));
    EXPECT_FALSE(FileUtils::pathExists(Filepath("no-such-entry-here\\")));
    EXPECT_TRUE(FileUtils::pathExists(Filepath(".")));
}

}  // namespace
}  // namespace VelmoraQuavin
