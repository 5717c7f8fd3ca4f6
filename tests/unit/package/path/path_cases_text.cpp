// How the text of a path is split into parts.

#include "unit/package/path/path_cases.h"

namespace VelmoraQuavin::testing {
namespace {

using namespace std::string_literals;

Cases separators() {
    return {
        same("PlainName", kRead, "file", "content"),
        same("FullPath", kRead, "{}\\file", "content"),
        same("Backslash", kRead, "folder\\inner", "inner"),
        same("Slash", kRead, "folder/inner", "inner"),
        same("SlashAfterFullPath", kRead, "{}/folder/inner", "inner"),
        same("MixedSeparators", kSize, "{}/folder\\inner", "5"),
        same("DoubledBackslash", kRead, "folder\\\\inner", "inner"),
        same("DoubledSlash", kRead, "folder//inner", "inner"),
        same("DoubledMixed", kRead, R"({}\/folder/\\inner)", "inner"),
        same("BackslashToCreate", kCreateDir, "folder\\new", "done, +folder/new/"),
        same("SlashToCreate", kCreateDir, "folder/new", "done, +folder/new/"),
        same("DoubledToCreate", kCreateDir, "folder\\\\new", "done, +folder/new/"),
        same("BackslashToWrite", kWrite, "folder\\new", "done, +folder/new=text"),
        same("SlashToWrite", kWrite, "folder/new", "done, +folder/new=text"),
        same("BackslashToDelete", kDelete, "folder\\inner", "done, -folder/inner"),
        same("SlashToDelete", kDelete, "folder/inner", "done, -folder/inner"),
        same("DoubledToDelete", kDelete, "folder\\/inner", "done, -folder/inner"),
        same("Root", kExists, "\\", "true"),
        same("RootToCreate", kCreateDir, "\\", "done"),
        same("RootToRead", kRead, "/", "null"),
    };
}

Cases trailingSeparators() {
    return {
        same("EndOfNewDirectory", kCreateDir, "new\\", "done, +new/"),
        same("SlashAtEndOfNewDirectory", kCreateDir, "new/", "done, +new/"),
        same("EndOfDirectory", kCreateDir, "folder\\", "done"),
        same("EndOfFileToCreate", kCreateDir, "file\\", "done"),
        same("EndOfDirectoryExists", kExists, "folder\\", "true"),
        same("TwoAtEndOfDirectoryExist", kExists, "folder\\/", "true"),
        same("EndOfFileExists", kExists, "file\\", "true"),
        same("EndOfMissing", kExists, "missing\\", "false"),
        same("EndOfMissingBelowMissing", kExists, "missing\\child/", "true"),
        same("EndOfDirectoryToRead", kRead, "folder\\", "null"),
        same("EndOfFileToRead", kRead, "file\\", "null"),
        same("EndOfFileToMeasure", kSize, "file/", "throws"),
        same("EndOfFileToWrite", kWrite, "file\\", "done"),
        same("EndOfNewFile", kWrite, "new\\", "done"),
        same("EndOfDirectoryToDelete", kDelete, "folder\\", "throws"),
        same("EndOfFileToDelete", kDelete, "file\\", "throws"),
    };
}

Cases dots() {
    return {
        same("Dot", kExists, ".", "true"),
        same("DotToCreate", kCreateDir, ".", "done"),
        same("DotToRead", kRead, ".", "null"),
        same("DotToDelete", kDelete, ".", "throws"),
        same("DotDot", kExists, "..", "true"),
        same("DotDotToCreate", kCreateDir, "..", "done"),
        same("DotInside", kRead, "folder\\.\\inner", "inner"),
        same("DotFirst", kRead, ".\\file", "content"),
        same("DotDotOutOfDirectory", kRead, "folder\\..\\file", "content"),
        same("DotDotToAMissingName", kExists, "folder\\..\\missing", "false"),
        same("DotDotAboveTheRoot", kExists, "\\..\\..", "true"),
        same("DotDotToCreateInside", kCreateDir, "folder\\..\\new", "done, +new/"),
        differs("dot-dot", "DotDotOutOfMissing", kRead, "missing\\..\\file", "null", "content"),
        differs("dot-dot", "DotDotOutOfFile", kRead, R"(file\..\folder\inner)", "null", "inner"),
        differs("dot-dot", "DotDotOutOfMissingToCreate", kCreateDir, "missing\\..\\new", "throws",
                "done, +new/"),
        differs("dot-dot", "DotDotOutOfMissingToWrite", kWrite, "missing\\..\\new", "done",
                "done, +new=text"),
        differs("dot-dot", "DotDotOutOfMissingToDelete", kDelete, "missing\\..\\file", "throws",
                "done, -file"),
        differs("dot-dot", "DotDotOutOfMissingExists", kExists, "missing\\..\\new", "true",
                "false"),
    };
}

Cases emptyAndZeroBytes() {
    return {
        same("Empty", kExists, "", "true"),
        same("EmptyToCreate", kCreateDir, "", "throws"),
        same("EmptyToRead", kRead, "", "null"),
        same("EmptyToMeasure", kSize, "", "throws"),
        same("EmptyToWrite", kWrite, "", "done"),
        same("EmptyToDelete", kDelete, "", "throws"),
        same("ZeroByteFirst", kCreateDir, "\0new"s, "throws"),
        same("ZeroByteToCreate", kCreateDir, "new\0junk"s, "done, +new/"),
        same("ZeroByteToRead", kRead, "file\0junk"s, "content"),
        same("ZeroByteToWrite", kWrite, "new\0\\junk"s, "done, +new=text"),
        same("ZeroByteToDelete", kDelete, "file\0junk"s, "done, -file"),
        same("ZeroByteBeforeBadUtf8", kExists, "missing\0\xFF"s, "false"),
    };
}

Cases parents() {
    return {
        same("Existing", kCreateDir, "folder", "done"),
        same("FileOfThatName", kCreateDir, "file", "done"),
        same("Missing", kExists, "missing", "false"),
        same("MissingToRead", kRead, "missing", "null"),
        same("MissingToMeasure", kSize, "missing", "throws"),
        same("MissingToDelete", kDelete, "missing", "throws"),
        same("BelowMissing", kExists, "missing\\child", "true"),
        same("BelowMissingToCreate", kCreateDir, "missing\\child", "throws"),
        same("BelowMissingToWrite", kWrite, "missing\\child", "done"),
        same("BelowMissingToDelete", kDelete, "missing\\child", "throws"),
        same("BelowFile", kExists, "file\\child", "true"),
        same("BelowFileToCreate", kCreateDir, "file\\child", "throws"),
        same("BelowFileToRead", kRead, "file\\child", "null"),
        same("BelowFileToWrite", kWrite, "file\\child", "done"),
        same("BelowFileToDelete", kDelete, "file\\child", "throws"),
        same("FarBelowFile", kExists, "file\\a\\b", "true"),
        same("DirectoryToRead", kRead, "folder", "null"),
        same("DirectoryToMeasure", kSize, "folder", "throws"),
        same("DirectoryToWrite", kWrite, "folder", "done"),
        same("DirectoryToDelete", kDelete, "folder", "throws"),
    };
}

}  // namespace

Cases pathTextCases() {
    Cases all;
    for (const Cases& cases :
         {separators(), trailingSeparators(), dots(), emptyAndZeroBytes(), parents()}) {
        all.insert(all.end(), cases.begin(), cases.end());
    }
    return all;
}

}  // namespace VelmoraQuavin::testing
