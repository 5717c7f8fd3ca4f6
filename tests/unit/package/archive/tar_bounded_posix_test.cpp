// Names that both overloads extract alike on POSIX systems only: other systems do not accept
// trailing white space, and the narrow interface with which the overload without a length creates
// directories garbles names outside ASCII there.

#include <gtest/gtest.h>

#include <string>

#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::fileInTree;
using testing::FileTree;
using testing::IsOk;
using testing::kDirectoryInTree;
using testing::TarDestination;
using testing::tarDirectory;
using testing::tarEnd;
using testing::tarFile;

void expectBothExtract(const std::string& archive, const FileTree& tree) {
    TarDestination unbounded;
    EXPECT_THAT(unbounded.extractUnbounded(archive), IsOk());
    EXPECT_EQ(unbounded.tree(), tree);
    TarDestination bounded;
    EXPECT_THAT(bounded.extract(archive), IsOk());
    EXPECT_EQ(bounded.tree(), tree);
}

TEST(TarOverloadsOnPosix, TrailingWhiteSpaceInAFileNameIsKept) {
    expectBothExtract(tarFile(" my\tfile\n", "content") + tarEnd(),
                      {{" my\tfile\n", fileInTree("content")}});
}

TEST(TarOverloadsOnPosix, DirectoriesWithNonAsciiNamesAreCreated) {
    expectBothExtract(tarDirectory("größe/") + tarFile("größe/模型", "content") + tarEnd(),
                      {{"größe", kDirectoryInTree}, {"größe/模型", fileInTree("content")}});
}

}  // namespace
}  // namespace VelmoraQuavin
