#include "platform/directory_listing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "support/system.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

TEST(ListDirectory, NamesTheEntriesOfTheDirectoryItself) {
    const testing::TempDirectory directory;
    std::vector<std::string> names;
    EXPECT_EQ(listDirectory(directory.text(), names), "");
    EXPECT_THAT(names, IsEmpty());
    directory.write("file", "content");
    directory.write("größe 日本/inner", "content");
    directory.write(".hidden", "");
    const std::size_t before = testing::openFiles();
    EXPECT_EQ(listDirectory(directory.text(), names), "");
    EXPECT_THAT(names, UnorderedElementsAre("file", "größe 日本", ".hidden"));
    EXPECT_EQ(testing::openFiles(), before);
    names.clear();
    EXPECT_EQ(listDirectory(directory.entry("größe 日本"), names), "");
    EXPECT_THAT(names, UnorderedElementsAre("inner"));
}

TEST(ListDirectory, ReportsWhyAnythingElseCannotBeListed) {
    const testing::TempDirectory directory;
    directory.write("file", "content");
    std::vector<std::string> names;
    EXPECT_THAT(listDirectory(directory.entry("file"), names), StartsWith("cannot be listed: "));
    EXPECT_THAT(listDirectory(directory.entry("missing"), names), StartsWith("cannot be listed: "));
    EXPECT_THAT(names, IsEmpty());
}

TEST(ListDirectory, RequiresAPathInUtf8) {
    std::vector<std::string> names;
    EXPECT_THROW(static_cast<void>(listDirectory("\xFF", names)), std::range_error);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
