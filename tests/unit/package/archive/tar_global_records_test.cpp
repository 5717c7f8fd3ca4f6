// Pax records that apply to all entries. Git, for one, writes a comment.

#include <gtest/gtest.h>

#include <string>

#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::fileInTree;
using testing::FileTree;
using testing::gnuLongName;
using testing::IsOk;
using testing::paxHeader;
using testing::paxRecord;
using testing::tarEnd;
using testing::TarExtraction;
using testing::tarFile;

class TarGlobalRecords : public TarExtraction {
protected:
    static std::string global(const std::string& records) { return paxHeader(records, 'g'); }
};

TEST_F(TarGlobalRecords, RecordsWithoutNamesOrSizesAreAccepted) {
    EXPECT_THAT(to_.extract(global(paxRecord("comment", "654fd6d8") + paxRecord("mtime", "0")) +
                            tarFile("file") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("")}}));
}

TEST_F(TarGlobalRecords, NoEntryNeedFollow) {
    EXPECT_THAT(to_.extract(global(paxRecord("comment", "x")) + tarEnd()), IsOk());
    EXPECT_EQ(to_.result(), "");
}

TEST_F(TarGlobalRecords, EarlierExtensionsStayInForce) {
    EXPECT_THAT(to_.extract(gnuLongName("long") + global(paxRecord("comment", "x")) +
                            tarFile("file") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"long", fileInTree("")}}));
}

TEST_F(TarGlobalRecords, ANameOrSizeForAllEntriesIsRefused) {
    for (const std::string key : {"path", "size", "GNU.sparse.size"}) {
        expectRefused(tarFile("good") + global(paxRecord(key, "7")) + tarFile("file") + tarEnd(),
                      TAR_UNSUPPORTED_ENTRY,
                      "Archive entry 2: one name or size for all entries is not supported");
    }
}

TEST_F(TarGlobalRecords, MalformedRecordsAreRefused) {
    expectRefused(global("no records") + tarFile("file") + tarEnd(), INVALID_ARGUMENTS,
                  "Archive entry 1: its pax records are malformed");
}

}  // namespace
}  // namespace VelmoraQuavin
