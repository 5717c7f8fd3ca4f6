// Entries that are neither files nor directories.

#include <gtest/gtest.h>

#include <string>

#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::paxHeader;
using testing::paxRecord;
using testing::tarDirectory;
using testing::tarEnd;
using testing::tarEntry;
using testing::TarExtraction;
using testing::tarFields;
using testing::TarFields;
using testing::tarFile;

class TarUnsupported : public TarExtraction, public ::testing::WithParamInterface<char> {
protected:
    static std::string entry(const std::string& content) {
        TarFields fields = tarFields("entry", GetParam());
        fields.linkName = "../outside/file";
        return tarEntry(fields, content);
    }
    static std::string shownType() {
        const bool isShown = GetParam() >= ' ' && GetParam() <= '~';
        return isShown ? std::string(1, GetParam()) : "?";
    }
};

TEST_P(TarUnsupported, TheArchiveIsRefused) {
    for (const std::string content : {"", "content"}) {
        expectRefused(tarDirectory("root") + entry(content) + tarEnd(), TAR_UNSUPPORTED_ENTRY,
                      R"(Archive entry 2 ("entry"): it is neither a file nor a directory (type ")" +
                          shownType() + "\")");
    }
}

TEST_P(TarUnsupported, TheMessageGivesTheNameFromTheExtension) {
    expectRefused(paxHeader(paxRecord("path", "a long name")) + entry("") + tarEnd(),
                  TAR_UNSUPPORTED_ENTRY,
                  "Archive entry 1 (\"a long name\"): it is neither a file nor a directory (type "
                  "\"" +
                      shownType() + "\")");
}

// A hard and a symbolic link, devices, a fifo, a contiguous file; GNU tar's sparse files,
// directories, volumes and continued files; Solaris's attributes; types that do not exist.
INSTANTIATE_TEST_SUITE_P(Types, TarUnsupported,
                         ::testing::Values('1', '2', '3', '4', '6', '7', 'S', 'D', 'V', 'M', 'X',
                                           'A', ' ', '8', '\1', '\xFF'));

class TarSparse : public TarExtraction {};

TEST_F(TarSparse, APaxSparseFileIsRefused) {
    for (const std::string key : {"GNU.sparse.major", "GNU.sparse.map", "GNU.sparse.size"}) {
        expectRefused(paxHeader(paxRecord(key, "1")) + tarFile("file", "content") + tarEnd(),
                      TAR_UNSUPPORTED_ENTRY, "Archive entry 1 (\"file\"): it is a sparse file");
    }
}

}  // namespace
}  // namespace VelmoraQuavin
