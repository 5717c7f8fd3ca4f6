// Where a package is found in an archive. What is refused for its form is tested beside extraction.

#include "package/archive/archived_package.h"

#include <gtest/gtest.h>

#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin::testing {
namespace {

using Files = std::map<std::string, std::string>;

// The files of the package in an archive, and their contents.
Files filesIn(const std::string& archive) {
    const ExactBytes bytes(archive);
    Files files;
    for (const auto& [path, entry] : internal::readArchivedPackage(bytes.data(), bytes.size())) {
        files.emplace(path, std::string(reinterpret_cast<const char*>(entry.content), entry.size));
    }
    return files;
}

TEST(ArchivedPackage, IsFoundAtTheTop) {
    const Files files = {{"manifest.json", "m"}, {"net.xml", "n"}, {"a/b", ""}};
    EXPECT_EQ(filesIn(tarFile("net.xml", "n") + tarFile("manifest.json", "m") + tarDirectory("a/") +
                      tarFile("a/b") + tarEnd()),
              files);
    EXPECT_EQ(filesIn(tarDirectory("./") + tarFile("./manifest.json", "m") +
                      tarFile("./net.xml", "n") + tarFile(".\\a/b") + tarEnd()),
              files);
}

TEST(ArchivedPackage, IsFoundInADirectoryAtTheTop) {
    const Files files = {{"manifest.json", "m"}, {"net.xml", "n"}};
    EXPECT_EQ(filesIn(tarDirectory("model/") + tarFile("model/manifest.json", "m") +
                      tarFile("model/net.xml", "n") + tarEnd()),
              files);
    EXPECT_EQ(
        filesIn(tarFile("model/net.xml", "n") + tarFile("model\\manifest.json", "m") + tarEnd()),
        files);
}

TEST(ArchivedPackage, LeavesOutFilesBesideItsDirectory) {
    EXPECT_EQ(filesIn(tarFile("a/net.xml") + tarFile("b/manifest.json", "m") +
                      tarFile("b-side/net.xml") + tarFile("net.xml") + tarEnd()),
              (Files{{"manifest.json", "m"}}));
}

TEST(ArchivedPackage, IsLookedForInTheFirstDirectoryFirst) {
    EXPECT_EQ(filesIn(tarDirectory("z/") + tarDirectory("a/") + tarFile("manifest.json", "top") +
                      tarFile("a/manifest.json", "a") + tarFile("z/manifest.json", "z") + tarEnd()),
              (Files{{"manifest.json", "z"}}));
}

TEST(ArchivedPackage, IsLookedForAtTheTopBeforeOtherDirectories) {
    EXPECT_EQ(
        filesIn(tarFile("assets/manifest.json", "a") + tarFile("manifest.json", "top") + tarEnd()),
        (Files{{"assets/manifest.json", "a"}, {"manifest.json", "top"}}));
}

TEST(ArchivedPackage, HasTheLastOfFilesWithTheSameName) {
    EXPECT_EQ(
        filesIn(tarFile("manifest.json", "old") + tarFile("./manifest.json", "new") + tarEnd()),
        (Files{{"manifest.json", "new"}}));
}

TEST(ArchivedPackage, IsRefusedWithoutAManifest) {
    for (const std::string& archive :
         {tarEnd(), tarFile("net.xml") + tarEnd(), tarFile("a/b/manifest.json") + tarEnd(),
          tarFile("Manifest.json") + tarEnd(), tarFile("xmanifest.json") + tarEnd(),
          tarDirectory("manifest.json/") + tarEnd()}) {
        EXPECT_THAT(readPackage(archive),
                    IsStatus(MODEL_METADATA_ERROR, "The archive contains no manifest.json"));
    }
}

TEST(ArchivedPackage, MayHaveLongNamesOfBothKinds) {
    const std::string name = std::string(120, 'n');
    EXPECT_EQ(filesIn(tarFile("manifest.json") + gnuLongName("gnu/" + name) + tarFile("g", "1") +
                      paxHeader(paxRecord("path", "pax/" + name)) + tarFile("p", "2") + tarEnd()),
              (Files{{"manifest.json", ""}, {"gnu/" + name, "1"}, {"pax/" + name, "2"}}));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
