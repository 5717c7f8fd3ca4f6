#include "platform/loaded_libraries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(LoadedLibraries, AreFilesOnTheDisk) {
    const std::vector<std::string> files = loadedLibraries();
    EXPECT_FALSE(files.empty());
    for (const std::string& file : files) {
        EXPECT_TRUE(std::filesystem::u8path(file).is_absolute()) << file;
    }
}

TEST(LoadedLibraries, IncludeTheStandardLibraryButNotTheProgram) {
    const std::vector<std::string> files = loadedLibraries();
#if defined(_WIN32)
    EXPECT_THAT(files, ::testing::Contains(::testing::HasSubstr("kernel32")));
#else
    EXPECT_THAT(files, ::testing::Contains(::testing::HasSubstr("/libc.")));
#endif
    EXPECT_THAT(files, ::testing::Not(::testing::Contains(::testing::HasSubstr("_tests"))));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
