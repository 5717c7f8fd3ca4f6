// How the path of a manifest determines its root directory and appears in messages.

#include <gtest/gtest.h>

#include <string>

#include "unit/package/manifest/manifest_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::IsOk;
using testing::IsStatus;

class ManifestPath : public testing::ManifestFixture {
protected:
    // Loads a manifest by this path and returns its root directory.
    String rootOf(const std::string& path) {
        directory_.write("manifest.json", R"({"targets": {}})");
        directory_.write("sub/manifest.json", R"({"targets": {}})");
        EXPECT_THAT(metadata_.load(Filepath(path)), IsOk());
        return metadata_.getRootDir().c_str();
    }
};

TEST_F(ManifestPath, TheRootIsTheTextBeforeTheLastBackslash) {
    EXPECT_EQ(rootOf(directory_.entry("manifest.json")), directory_.text());
    EXPECT_EQ(rootOf(directory_.entry("sub\\manifest.json")), directory_.text() + "\\sub");
    EXPECT_EQ(rootOf(directory_.entry("sub\\\\manifest.json")), directory_.text() + "\\sub\\");
}

TEST_F(ManifestPath, APathWithoutBackslashesIsItsOwnRoot) {
    const std::string path = directory_.path().generic_u8string() + "/manifest.json";
    EXPECT_EQ(rootOf(path), path);
}

TEST_F(ManifestPath, SlashesAfterTheLastBackslashAreDroppedToo) {
    EXPECT_EQ(rootOf(directory_.entry("sub/manifest.json")), directory_.text());
}

TEST_F(ManifestPath, ThePathMayBeOutsideAscii) {
    directory_.write("名前/manifest.json", R"({"targets": {}})");
    EXPECT_THAT(metadata_.load(Filepath(directory_.entry("名前\\manifest.json"))), IsOk());
    EXPECT_EQ(String(metadata_.getRootDir().c_str()), directory_.entry("名前"));
}

TEST_F(ManifestPath, InvalidUtf8IsABadConversion) {
    metadata_.setRootDir(Filepath("earlier"));
    EXPECT_THAT(metadata_.load(Filepath(directory_.entry("\xFF"))),
                IsStatus(FAILURE, "bad conversion"));
    EXPECT_EQ(String(metadata_.getRootDir().c_str()), "earlier");
}

TEST_F(ManifestPath, TheMessageShowsThePathAsGiven) {
    EXPECT_THAT(metadata_.load(Filepath("missing/a\\\\b")),
                IsStatus(MODEL_METADATA_ERROR, "Failed to open metadata file at missing/a\\\\b"));
}

}  // namespace
}  // namespace VelmoraQuavin
