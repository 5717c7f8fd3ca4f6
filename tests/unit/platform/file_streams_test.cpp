#include "platform/file_streams.h"

#include <gtest/gtest.h>

#include <fstream>
#include <ios>
#include <stdexcept>
#include <string>

#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using testing::TempDirectory;

TEST(OpenFile, OpensInTheGivenMode) {
    const TempDirectory directory;
    directory.write("file", "one");
    {
        std::fstream stream = openFile(directory.entry("file"), std::ios::out | std::ios::app);
        ASSERT_TRUE(stream.is_open());
        stream << " two";
    }
    EXPECT_EQ(directory.read("file"), "one two");
    {
        std::fstream stream = openFile(directory.entry("file"), std::ios::in | std::ios::out);
        std::string word;
        stream >> word;
        EXPECT_EQ(word, "one");
        stream.seekp(0);
        stream << "1st";
    }
    EXPECT_EQ(directory.read("file"), "1st two");
}

TEST(OpenFile, ReturnsAClosedStreamIfItCannotOpen) {
    const TempDirectory directory;
    EXPECT_FALSE(openFile(directory.entry("missing"), std::ios::in).is_open());
    EXPECT_FALSE(openFile(directory.entry("missing\\file"), std::ios::out).is_open());
}

TEST(OpenFileForWriting, EmptiesTheFile) {
    const TempDirectory directory;
    directory.write("file", "earlier");
    std::ofstream stream = openFileForWriting(directory.entry("file"), std::ios::binary);
    EXPECT_TRUE(stream.is_open());
    EXPECT_EQ(directory.read("file"), "");
}

TEST(OpenFileForWriting, ReturnsAClosedStreamForADirectory) {
    const TempDirectory directory;
    EXPECT_FALSE(openFileForWriting(directory.text(), std::ios::binary).is_open());
}

TEST(FileStreams, ThrowForAPathThatIsNotUtf8) {
    EXPECT_THROW(openFile("\xFF", std::ios::in), std::range_error);
    EXPECT_THROW(openFileForWriting("\xFF", std::ios::binary), std::range_error);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
