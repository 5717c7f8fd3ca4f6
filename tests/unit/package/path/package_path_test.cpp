#include "package/path/package_path.h"

#include <gtest/gtest.h>

namespace VelmoraQuavin::internal {
namespace {

TEST(PackagePath, BothSeparatorsSeparate) {
    EXPECT_EQ(packagePath("net.xml"), "net.xml");
    EXPECT_EQ(packagePath("a/b\\c"), "a/b/c");
}

TEST(PackagePath, DotsAndEmptyPartsAreSkipped) {
    EXPECT_EQ(packagePath("./a//b\\.\\\\c/"), "a/b/c");
    EXPECT_EQ(packagePath("/a"), "a");
    EXPECT_EQ(packagePath(""), "");
    EXPECT_EQ(packagePath("."), "");
    EXPECT_EQ(packagePath("/\\"), "");
}

TEST(PackagePath, NothingElseIsChangedOrRefused) {
    EXPECT_EQ(packagePath("../a"), "../a");
    EXPECT_EQ(packagePath("a/../.b/c."), "a/../.b/c.");
    EXPECT_EQ(packagePath("größe\n.bin"), "größe\n.bin");
}

}  // namespace
}  // namespace VelmoraQuavin::internal
