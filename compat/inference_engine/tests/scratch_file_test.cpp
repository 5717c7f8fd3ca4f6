// The file that networks are exported to.
#include "scratch_file.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>

namespace InferenceEngine::runtime {
namespace {

using testing::IsEmpty;

void write(const ScratchFile& file, const std::string& text) {
    std::ofstream stream(file.path(), std::ios::binary);
    stream << text;
    ASSERT_TRUE(stream.flush());
}

TEST(ScratchFileTest, HoldsWhatIsWrittenToItsPath) {
    ScratchFile file;
    const std::string text(100000, 's');
    write(file, text);
    EXPECT_EQ(file.content(), text);
    EXPECT_EQ(file.content(), text);
}

TEST(ScratchFileTest, IsEmptyAtFirst) {
    ScratchFile file;
    EXPECT_THAT(file.content(), IsEmpty());
    EXPECT_THAT(file.content(), IsEmpty());
}

TEST(ScratchFileTest, IsAnotherOneEachTime) {
    ScratchFile first;
    ScratchFile second;
    write(first, "first");
    write(second, "second");
    EXPECT_EQ(first.content(), "first");
    EXPECT_EQ(second.content(), "second");
}

TEST(ScratchFileTest, IsGoneAfterwardsEvenIfNobodyReadIt) {
    std::optional<ScratchFile> file(std::in_place);
    write(*file, "text");
    const std::string path = file->path();
    EXPECT_TRUE(std::filesystem::exists(path));
    file.reset();
    EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace InferenceEngine::runtime
