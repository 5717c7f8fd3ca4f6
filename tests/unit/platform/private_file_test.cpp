#include "platform/private_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <filesystem>
#include <string>

#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

class PrivateFile : public ::testing::Test {
protected:
    std::string read(const std::string& name, OpenToOthers others = OpenToOthers::kRefused) {
        std::string problem;
        outcome_ = readPrivateFile(directory_.entry(name), others, buffer_.data(), buffer_.size(),
                                   size_, problem);
        return problem;
    }
    std::string write(const std::string& name, const std::string& content,
                      Readers readers = Readers::kOwner) {
        return writeNewFile(directory_.entry(name),
                            reinterpret_cast<const unsigned char*>(content.data()), content.size(),
                            readers);
    }
    void writeWithMode(const std::string& name, const std::string& content, fs::perms mode) {
        directory_.write(name, content);
        fs::permissions(directory_.path() / name, mode);
    }
    std::string got() const { return {reinterpret_cast<const char*>(buffer_.data()), size_}; }

    testing::TempDirectory directory_;
    std::array<unsigned char, 8> buffer_{};
    std::size_t size_ = 0;
    PrivateReading outcome_ = PrivateReading::kFailed;
};

constexpr fs::perms kOwner = fs::perms::owner_read | fs::perms::owner_write;

TEST_F(PrivateFile, IsReadWhereOnlyItsOwnerMay) {
    writeWithMode("key", "secret", kOwner);
    EXPECT_THAT(read("key"), IsEmpty());
    EXPECT_EQ(outcome_, PrivateReading::kDone);
    EXPECT_EQ(got(), "secret");
}

TEST_F(PrivateFile, IsRefusedWhereItsGroupOrOthersMayReadIt) {
    for (const fs::perms more : {fs::perms::group_read, fs::perms::others_read}) {
        writeWithMode("key", "secret", kOwner | more);
        EXPECT_THAT(read("key"), HasSubstr("can be read by others: "));
        EXPECT_EQ(outcome_, PrivateReading::kOpenToOthers);
        EXPECT_EQ(size_, 0U);
        EXPECT_THAT(read("key", OpenToOthers::kAllowed), IsEmpty());
        EXPECT_EQ(got(), "secret");
        size_ = 0;
    }
}

TEST_F(PrivateFile, OfMoreThanTheCapacityGivesThatMuch) {
    writeWithMode("key", "0123456789", kOwner);
    EXPECT_THAT(read("key"), IsEmpty());
    EXPECT_EQ(got(), "01234567");
}

TEST_F(PrivateFile, ThatIsEmptyGivesNoBytes) {
    writeWithMode("key", "", kOwner);
    size_ = 5;
    EXPECT_THAT(read("key"), IsEmpty());
    EXPECT_EQ(size_, 0U);
}

TEST_F(PrivateFile, ThatIsMissingOrNoPlainFileIsRefused) {
    EXPECT_THAT(read("missing"), HasSubstr("cannot be opened: No such file"));
    fs::create_directory(directory_.path() / "folder");
    EXPECT_EQ(read("folder"), "is no plain file");
    EXPECT_EQ(outcome_, PrivateReading::kFailed);
    // Without a writer: reading it would wait for ever.
    ASSERT_EQ(::mkfifo((directory_.path() / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(read("pipe"), "is no plain file");
}

TEST_F(PrivateFile, IsWrittenForItsOwnerAlone) {
    const mode_t before = ::umask(0);
    EXPECT_THAT(write("key", "secret"), IsEmpty());
    ::umask(before);
    EXPECT_EQ(directory_.read("key"), "secret");
    EXPECT_EQ(fs::status(directory_.path() / "key").permissions(), kOwner);
}

TEST_F(PrivateFile, ForEveryoneHasTheUsualMode) {
    const mode_t before = ::umask(022);
    EXPECT_THAT(write("result", "open", Readers::kEveryone), IsEmpty());
    ::umask(before);
    EXPECT_EQ(fs::status(directory_.path() / "result").permissions(),
              kOwner | fs::perms::group_read | fs::perms::others_read);
}

TEST_F(PrivateFile, ReplacesNothing) {
    directory_.write("key", "old");
    EXPECT_THAT(write("key", "new"), HasSubstr("cannot be made: File exists"));
    EXPECT_EQ(directory_.read("key"), "old");
}

TEST_F(PrivateFile, IsNotWrittenThroughALink) {
    fs::create_symlink("elsewhere", directory_.path() / "key");
    EXPECT_THAT(write("key", "new"), HasSubstr("cannot be made"));
    EXPECT_FALSE(fs::exists(directory_.path() / "elsewhere"));
}

TEST_F(PrivateFile, InAMissingDirectoryIsRefused) {
    EXPECT_THAT(write("no\\key", "new"), HasSubstr("cannot be made: No such file or directory"));
}

TEST_F(PrivateFile, ADirectoryIsMadeForItsOwnerAlone) {
    const mode_t before = ::umask(0);
    EXPECT_TRUE(makePrivateDirectory(directory_.entry("folder")));
    ::umask(before);
    EXPECT_EQ(fs::status(directory_.path() / "folder").permissions(), fs::perms::owner_all);
    EXPECT_FALSE(makePrivateDirectory(directory_.entry("folder")));
    EXPECT_FALSE(makePrivateDirectory(directory_.entry("no\\folder")));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
