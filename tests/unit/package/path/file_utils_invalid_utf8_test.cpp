// Operations that open or query a file require a UTF-8 path; the two that use the narrow text do
// not.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

#include "quavin/files.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin {
namespace {

struct Operation {
    const char* name;
    std::function<void(const Filepath&)> run;
};

uint64 ignoredSize = 0;
char ignoredBuffer[16] = "";

const Operation kWideOperations[] = {
    {"PathExists", [](const Filepath& path) { FileUtils::pathExists(path); }},
    {"GetFileSize", [](const Filepath& path) { FileUtils::getFileSize(path); }},
    {"ReadToBuffer",
     [](const Filepath& path) { FileUtils::readBinaryFileToBuffer(path, ignoredSize); }},
    {"ReadToAllocated",
     [](const Filepath& path) {
         FileUtils::readBinaryFileToAllocated(path, ignoredSize, ignoredBuffer);
     }},
    {"OpenForWriting", [](const Filepath& path) { FileUtils::openFileToWriteBinaryData(path); }},
    {"WriteBinary",
     [](const Filepath& path) { FileUtils::writeBinaryDataToFile("content", 7, path); }},
    {"WriteString", [](const Filepath& path) { FileUtils::writeStringToFile("content", path); }},
};

class FileUtilsInvalidUtf8 : public ::testing::TestWithParam<Operation> {};

TEST_P(FileUtilsInvalidUtf8, ThrowsBadConversion) {
    const testing::TempDirectory directory;
    for (const char* name : {
             "\xFF",              // never valid in UTF-8
             "\x80",              // a stray continuation
             "caf\xC3",           // truncated
             "\xC3(",             // without a continuation
             "\xC0\xAF",          // overlong
             "\xED\xA0\x80",      // half a surrogate pair
             "\xF4\x90\x80\x80",  // past the last code point
             "\xFF\\file",        // in a directory's name
         }) {
        try {
            GetParam().run(Filepath(directory.entry(name)));
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::range_error& error) {
            EXPECT_STREQ(error.what(), "bad conversion");
        }
    }
    EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

INSTANTIATE_TEST_SUITE_P(, FileUtilsInvalidUtf8, ::testing::ValuesIn(kWideOperations),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(FileUtilsNarrowText, CreateDirAcceptsInvalidUtf8) {
    const testing::TempDirectory directory;
    EXPECT_NO_THROW(FileUtils::createDir(Filepath(directory.entry("\xFF"))));
}

TEST(FileUtilsNarrowText, CreateDirIncludesInvalidUtf8InItsMessage) {
    testing::expectThrows<FileException>([] { FileUtils::createDir(Filepath("missing\\\xFF")); },
                                         FILE_ERROR, "Path incorrect : missing\\\xFF");
}

TEST(FileUtilsNarrowText, DeleteFileIncludesInvalidUtf8InItsMessage) {
    testing::expectThrows<FileException>([] { FileUtils::deleteFile(Filepath("missing\\\xFF")); },
                                         FILE_ERROR, "Could not delete file : missing\\\xFF");
}

}  // namespace
}  // namespace VelmoraQuavin
