// Mappings and the names, permissions and kinds of files that only POSIX systems have.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

#include "platform/input_file.h"
#include "support/temp_directory.h"
#include "unit/package/dropped_privileges.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class MappedFileOnPosix : public ::testing::Test {
protected:
    MappedFileOnPosix() { directory_.write("file", "content"); }

    std::string path() const { return directory_.text() + "/file"; }
    static MappedFile map(const std::string& path) {
        std::string problem;
        return InputFile::open(path, problem).value().map(problem).value();
    }
    static std::string contentOf(const MappedFile& file) { return {file.data(), file.size()}; }

    testing::TempDirectory directory_;
};

TEST_F(MappedFileOnPosix, OutlivesTheFilesName) {
    const MappedFile file = map(path());
    std::filesystem::rename(path(), path() + "2");
    EXPECT_EQ(contentOf(file), "content");
    std::filesystem::remove(path() + "2");
    EXPECT_EQ(contentOf(file), "content");
}

TEST_F(MappedFileOnPosix, KeepsItsContentIfAnotherFileTakesItsPlace) {
    const MappedFile file = map(path());
    directory_.write("new", "another");
    std::filesystem::rename(directory_.path() / "new", path());
    EXPECT_EQ(contentOf(file), "content");
}

TEST_F(MappedFileOnPosix, APipeIsRefusedWithoutWaitingForAWriter) {
    const std::string pipe = directory_.text() + "/pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::string problem;
    EXPECT_FALSE(InputFile::open(pipe, problem).has_value());
    EXPECT_EQ(problem, "is not a regular file");
}

TEST_F(MappedFileOnPosix, AFileWithoutPermissionIsRefused) {
    std::filesystem::permissions(path(), std::filesystem::perms::none);
    const testing::DroppedPrivileges nobody;
    std::string problem;
    EXPECT_FALSE(InputFile::open(path(), problem).has_value());
    EXPECT_THAT(problem, StartsWith("cannot be opened: "));
}

#ifdef __linux__

std::string mappingsOfThisProcess() {
    std::ostringstream text;
    text << std::ifstream("/proc/self/maps").rdbuf();
    return text.str();
}

TEST_F(MappedFileOnPosix, IsReleasedOnDestruction) {
    {
        MappedFile file = map(path());
        EXPECT_THAT(mappingsOfThisProcess(), HasSubstr(path()));
        const MappedFile moved = std::move(file);
        EXPECT_THAT(mappingsOfThisProcess(), HasSubstr(path()));
    }
    EXPECT_THAT(mappingsOfThisProcess(), Not(HasSubstr(path())));
}

TEST_F(MappedFileOnPosix, ReportsWhyAFileCannotBeMapped) {
    // A regular file that has a size and can be read, but has no pages.
    const char* const attribute = "/sys/devices/system/cpu/online";
    std::string problem;
    const std::optional<InputFile> file = InputFile::open(attribute, problem);
    if (!file || file->size() == 0) {
        GTEST_SKIP() << attribute << " is missing or empty: " << problem;
    }
    EXPECT_FALSE(file->map(problem).has_value());
    EXPECT_THAT(problem, StartsWith("cannot be mapped into memory: "));
}

#endif

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
