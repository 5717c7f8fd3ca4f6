// Which files are accepted as manifests, and what a failed load leaves behind.

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <string>

#include "support/unreadable_file.h"
#include "unit/package/manifest/manifest_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::IsOk;
using testing::IsStatus;

class ManifestFile : public testing::ManifestFixture {
protected:
    void expectUnreadable(const std::string& manifest) {
        EXPECT_THAT(load(manifest), IsStatus(MODEL_METADATA_ERROR, failedToOpen())) << manifest;
    }
    String root() const { return metadata_.getRootDir().c_str(); }
};

TEST_F(ManifestFile, EmptyTargetsAloneAreEnough) {
    EXPECT_THAT(load(R"({"targets": {}})"), IsOk());
    EXPECT_EQ(metadata_.getId(), "");
    EXPECT_EQ(metadata_.getName(), "");
    EXPECT_EQ(metadata_.getAuthor(), "");
    EXPECT_EQ(metadata_.getDescription(), "");
    EXPECT_EQ(metadata_.getSdkVersion(), "");
    EXPECT_EQ(metadata_.getScripts(), "");
    EXPECT_EQ(metadata_.getVersion(), 0);
    EXPECT_TRUE(metadata_.getTargets().empty());
}

TEST_F(ManifestFile, AMissingFileFails) {
    EXPECT_THAT(metadata_.load(path()), IsStatus(MODEL_METADATA_ERROR, failedToOpen()));
    EXPECT_THAT(metadata_.load(Filepath()),
                IsStatus(MODEL_METADATA_ERROR, "Failed to open metadata file at "));
}

TEST_F(ManifestFile, ADirectoryFails) {
    std::filesystem::create_directory(directory_.path() / "manifest.json");
    EXPECT_THAT(metadata_.load(path()), IsStatus(MODEL_METADATA_ERROR, failedToOpen()));
}

TEST_F(ManifestFile, AnEmptyFileFails) {
    expectUnreadable("");
}

TEST_F(ManifestFile, AFileOfBlanksFails) {
    expectUnreadable(" ");
    expectUnreadable(" \t\r\n \n");
}

TEST_F(ManifestFile, InvalidJsonFails) {
    expectUnreadable("{");
    expectUnreadable("targets");
    expectUnreadable(R"({"targets": {})");
    expectUnreadable(R"({"targets": {},})");
    expectUnreadable(R"({'targets': {}})");
    expectUnreadable(R"({targets: {}})");
    expectUnreadable(R"({"targets": NaN})");
    expectUnreadable(R"(/* comment */ {"targets": {}})");
    expectUnreadable("{\"id\": \"line\nend\", \"targets\": {}}");
}

TEST_F(ManifestFile, ARootThatIsNotAnObjectFails) {
    for (const char* root : {"[]", R"([{"targets": {}}])", R"("targets")", "3", "true", "null"}) {
        expectUnreadable(root);
    }
}

TEST_F(ManifestFile, DataAfterTheObjectFails) {
    expectUnreadable(R"({"targets": {}} x)");
    expectUnreadable(R"({"targets": {}}{})");
    expectUnreadable(R"({"targets": {}}, )");
    expectUnreadable(std::string("{\"targets\": {}}\0x", 17));
}

TEST_F(ManifestFile, BlanksAndLineEndsAroundTheObjectAreAccepted) {
    EXPECT_THAT(load(" \t\r\n\n{\"targets\": {}}\n \t\r\n"), IsOk());
}

TEST_F(ManifestFile, OtherLeadingWhiteSpaceFails) {
    expectUnreadable("\f{\"targets\": {}}");
    expectUnreadable("\v{\"targets\": {}}");
    expectUnreadable("\xC2\xA0{\"targets\": {}}");  // a no-break space
    expectUnreadable(std::string("\0{\"targets\": {}}", 16));
}

TEST_F(ManifestFile, ALeadingByteOrderMarkIsAccepted) {
    EXPECT_THAT(load("\xEF\xBB\xBF{\"targets\": {}}"), IsOk());
    EXPECT_THAT(load("\xEF\xBB\xBF \n{\"targets\": {}}"), IsOk());
    expectUnreadable("\xEF\xBB\xBF");
    expectUnreadable(" \xEF\xBB\xBF{\"targets\": {}}");
    expectUnreadable("\xEF\xBB\xBF\xEF\xBB\xBF{\"targets\": {}}");
}

TEST_F(ManifestFile, APartialByteOrderMarkFails) {
    expectUnreadable("\xEF{\"targets\": {}}");
    expectUnreadable("\xBB{\"targets\": {}}");
    expectUnreadable("\xBF{\"targets\": {}}");
}

TEST_F(ManifestFile, SizeIsLimitedToOneMebibyte) {
    constexpr std::size_t most = std::size_t{1} << 20;
    const std::string manifest = R"({"targets": {}})";
    EXPECT_THAT(load(manifest + std::string(most - manifest.size(), ' ')), IsOk());
    EXPECT_THAT(load(manifest + std::string(most + 1 - manifest.size(), ' ')),
                IsStatus(MODEL_METADATA_ERROR, failedToOpen()));
}

TEST_F(ManifestFile, AnUnreadableFileFails) {
    directory_.write("manifest.json", R"({"targets": {}})");
    const testing::UnreadableFile unreadable(directory_.path() / "manifest.json");
    EXPECT_THAT(metadata_.load(path()), IsStatus(MODEL_METADATA_ERROR, failedToOpen()));
}

TEST_F(ManifestFile, MissingTargetsFail) {
    EXPECT_THAT(load("{}"),
                IsStatus(MODEL_METADATA_ERROR, "No target found in root of manifest file"));
    EXPECT_THAT(load(R"({"Targets": {}})"),
                IsStatus(MODEL_METADATA_ERROR, "No target found in root of manifest file"));
}

TEST_F(ManifestFile, MembersReadBeforeMissingTargetsAreKept) {
    EXPECT_THAT(load(R"({"id": "an id", "name": "a name", "author": "an author",
                         "description": "a description", "sdkVersion": "1.0", "version": 3})"),
                IsStatus(MODEL_METADATA_ERROR, "No target found in root of manifest file"));
    EXPECT_EQ(metadata_.getId(), "an id");
    EXPECT_EQ(metadata_.getName(), "a name");
    EXPECT_EQ(metadata_.getAuthor(), "an author");
    EXPECT_EQ(metadata_.getDescription(), "a description");
    EXPECT_EQ(metadata_.getSdkVersion(), "1.0");
    EXPECT_EQ(metadata_.getVersion(), 3);
    EXPECT_EQ(root(), directory_.text());
    EXPECT_TRUE(metadata_.getTargets().empty());
}

TEST_F(ManifestFile, InvalidJsonChangesNothing) {
    ASSERT_THAT(load(R"({"id": "an id", "targets": {"WinML": {}}})"), IsOk());
    expectUnreadable(R"({"id": "another id", "targets": {}},)");
    EXPECT_EQ(metadata_.getId(), "an id");
    EXPECT_EQ(root(), directory_.text());
    EXPECT_EQ(metadata_.getTargets().size(), 1u);
}

}  // namespace
}  // namespace VelmoraQuavin
