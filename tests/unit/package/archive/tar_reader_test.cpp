#include "package/archive/tar_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/tar_archive.h"
#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin::internal {
namespace {

using testing::ExactBytes;
using testing::expectThrows;
using testing::tarDirectory;
using testing::tarEnd;
using testing::tarEntry;
using testing::tarFields;
using testing::TarFields;
using testing::tarFile;

TEST(TarReaderTest, VisitsEveryEntry) {
    const ExactBytes bytes(tarDirectory("root/") + tarFile("root/file", "content") +
                           tarFile("empty") + tarEnd());
    TarReader reader(bytes.data(), bytes.size());
    TarEntry entry;

    ASSERT_TRUE(reader.next(entry));
    EXPECT_EQ(entry.kind, TarEntry::Kind::kDirectory);
    EXPECT_EQ(entry.name, "root/");
    EXPECT_EQ(entry.size, 0u);

    ASSERT_TRUE(reader.next(entry));
    EXPECT_EQ(entry.kind, TarEntry::Kind::kFile);
    EXPECT_EQ(entry.name, "root/file");
    EXPECT_EQ(entry.size, 7u);

    ASSERT_TRUE(reader.next(entry));
    EXPECT_EQ(entry.kind, TarEntry::Kind::kFile);
    EXPECT_EQ(entry.name, "empty");
    EXPECT_EQ(entry.size, 0u);

    EXPECT_FALSE(reader.next(entry));
}

TEST(TarReaderTest, ContentPointsIntoTheArchive) {
    const ExactBytes bytes(tarDirectory("root/") + tarFile("one", std::string(513, 'x')) +
                           testing::paxHeader(testing::paxRecord("path", "two")) +
                           tarFile("2", "two") + tarEnd());
    TarReader reader(bytes.data(), bytes.size());
    TarEntry entry;
    ASSERT_TRUE(reader.next(entry));
    ASSERT_TRUE(reader.next(entry));
    // After two headers.
    EXPECT_EQ(entry.content, bytes.data() + 1024);
    ASSERT_TRUE(reader.next(entry));
    // After two more blocks of content, two headers and one block of records.
    EXPECT_EQ(entry.content, bytes.data() + 3584);
    EXPECT_EQ(entry.size, 3u);
}

TEST(TarReaderTest, TheEndLeavesTheEntryAlone) {
    const ExactBytes bytes(tarFile("file", "content") + tarEnd());
    TarReader reader(bytes.data(), bytes.size());
    TarEntry entry;
    ASSERT_TRUE(reader.next(entry));
    for (int call = 0; call < 3; ++call) {
        EXPECT_FALSE(reader.next(entry));
        EXPECT_EQ(entry.name, "file");
        EXPECT_EQ(entry.content, bytes.data() + 512);
        EXPECT_EQ(entry.size, 7u);
    }
}

TEST(TarReaderTest, NamesAreReturnedVerbatim) {
    TarFields fields = tarFields("./c//\\file");
    fields.prefix = "../a\\b/";
    const ExactBytes bytes(tarEntry(fields) + tarEnd());
    TarReader reader(bytes.data(), bytes.size());
    TarEntry entry;
    ASSERT_TRUE(reader.next(entry));
    EXPECT_EQ(entry.name, "../a\\b//./c//\\file");
}

TEST(TarReaderTest, MessagesNumberTheEntries) {
    TarFields bad = tarFields("bad");
    bad.checksum = "000000";
    const ExactBytes bytes(tarFile("one") + testing::paxHeader(testing::paxRecord("path", "2")) +
                           tarFile("two") + tarEntry(bad));
    TarReader reader(bytes.data(), bytes.size());
    TarEntry entry;
    ASSERT_TRUE(reader.next(entry));
    ASSERT_TRUE(reader.next(entry));
    expectThrows<Exception>([&] { reader.next(entry); }, TAR_CHECKSUM_MISMATCH,
                            "Archive entry 3: the header's checksum is wrong");
}

TEST(TarReaderTest, EmptyInputIsNotRead) {
    const ExactBytes bytes("");
    TarReader reader(bytes.data(), 0);
    TarEntry entry;
    expectThrows<Exception>([&] { reader.next(entry); }, INVALID_ARGUMENTS,
                            "Archive entry 1: the archive is cut off: there is no end mark");
}

TEST(QuotedTarName, QuotesAName) {
    EXPECT_EQ(quotedTarName("folder/file"), "\"folder/file\"");
    EXPECT_EQ(quotedTarName(""), "\"\"");
    EXPECT_EQ(quotedTarName("my größe"), "\"my größe\"");
}

TEST(QuotedTarName, ReplacesControlCharacters) {
    EXPECT_EQ(quotedTarName(std::string("a\0b\x1B[31m\n\r\t\x1F\x7F ~", 15)),
              "\"a?b?[31m????? ~\"");
}

// A next line, a right-to-left override, a line separator and an isolate.
TEST(QuotedTarName, ReplacesOtherCharactersThatATerminalInterprets) {
    // NOLINTNEXTLINE(misc-misleading-bidirectional): what is replaced
    EXPECT_EQ(quotedTarName("a\xC2\x85|\u202Egpj.exe|\u2028|\u2066"), "\"a?|?gpj.exe|?|?\"");
}

TEST(QuotedTarName, ReplacesInvalidUtf8) {
    EXPECT_EQ(quotedTarName("a\xFF"
                            "b"),
              "\"a?b\"");
    EXPECT_EQ(quotedTarName("a\xC3"), "\"a?\"");
}

TEST(QuotedTarName, CutsLongNames) {
    EXPECT_EQ(quotedTarName(std::string(200, 'n')), '"' + std::string(200, 'n') + '"');
    EXPECT_EQ(quotedTarName(std::string(201, 'n')), '"' + std::string(200, 'n') + "...\"");
    EXPECT_EQ(quotedTarName(std::string(100000, 'n')), '"' + std::string(200, 'n') + "...\"");
}

// The limit falls inside a two-byte letter.
TEST(QuotedTarName, StaysUtf8WhenCut) {
    EXPECT_EQ(quotedTarName(std::string(199, 'n') + "ü"), '"' + std::string(199, 'n') + "?...\"");
}

}  // namespace
}  // namespace VelmoraQuavin::internal
