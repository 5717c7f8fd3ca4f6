#include "package/source/network_components.h"

#include <gmock/gmock.h>

#include "support/status_matcher.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::checkNetworkComponents;
using internal::collectNetworkComponents;
using internal::DirectorySource;
using internal::NetworkComponentEntry;

ModelComponent namedComponent(const String& name, const String& path) {
    ModelComponent made;
    made.name = name;
    made.path = path;
    return made;
}

NetworkComponentEntry fileEntryAt(const String& resolvedPath) {
    return {resolvedPath, "file", "", Encryption()};
}

TEST(NetworkComponents, FilesAndSecuredFilesAreCollectedInOrder) {
    const auto entries = collectNetworkComponents(
        {namedComponent("memory_stream", "a"), namedComponent("secured_file", "b"),
         namedComponent("secured_tar", "c"), namedComponent("file", "d"), namedComponent("", "e"),
         namedComponent("model", "f"), namedComponent("file", "g")},
        DirectorySource(Filepath("root")));
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].path, "b");
    EXPECT_EQ(entries[0].kind, "secured_file");
    EXPECT_TRUE(entries[0].isSecured());
    EXPECT_EQ(entries[1].path, "d");
    EXPECT_EQ(entries[1].kind, "file");
    EXPECT_FALSE(entries[1].isSecured());
    EXPECT_EQ(entries[2].path, "g");
}

TEST(NetworkComponents, KindsMustMatchExactly) {
    EXPECT_TRUE(collectNetworkComponents({namedComponent("File", "a"), namedComponent("file ", "b"),
                                          namedComponent("files", "c"), namedComponent("fil", "d"),
                                          namedComponent("SECURED_FILE", "e")},
                                         DirectorySource(Filepath("root")))
                    .empty());
}

TEST(NetworkComponents, PathsAreJoinedUnchanged) {
    const auto resolved = [](const char* root, const char* path) {
        return collectNetworkComponents({namedComponent("file", path)},
                                        DirectorySource(Filepath(root)))
            .at(0)
            .resolvedPath;
    };
    EXPECT_EQ(resolved("root", "net.xml"), "root\\net.xml");
    EXPECT_EQ(resolved("root\\", "net.xml"), "root\\\\net.xml");
    EXPECT_EQ(resolved("a\\b", "c/d"), "a\\b\\c/d");
    EXPECT_EQ(resolved("root", ".\\x\\..\\net.xml"), "root\\.\\x\\..\\net.xml");
    EXPECT_EQ(resolved("", ""), "\\");
}

TEST(NetworkComponents, TheKeyOfTheComponentIsKept) {
    ModelComponent made = namedComponent("secured_file", "a");
    const unsigned char key[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    made.setCryptoKey(key);
    made.encryption.setPaddingType(PaddingType::PKCS7);
    const auto entries = collectNetworkComponents({made}, DirectorySource(Filepath("root")));
    EXPECT_EQ(std::vector<unsigned char>(entries.at(0).encryption.getKey(),
                                         entries.at(0).encryption.getKey() + 16),
              std::vector<unsigned char>(key, key + 16));
    EXPECT_EQ(entries.at(0).encryption.getPaddingType(), PaddingType::PKCS7);
}

TEST(NetworkComponents, FewerThanTwoAnswer4IncompleteModel) {
    EXPECT_THAT(checkNetworkComponents({}), IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
    EXPECT_THAT(checkNetworkComponents({fileEntryAt("a")}),
                IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
    EXPECT_THAT(checkNetworkComponents({fileEntryAt("")}),
                IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
}

TEST(NetworkComponents, AnEmptyTopologyPathAnswers4NoModelPathDefined) {
    EXPECT_THAT(checkNetworkComponents({fileEntryAt(""), fileEntryAt("b")}),
                IsStatus(INVALID_MODEL_PATH, "No Model Path Defined"));
    EXPECT_THAT(checkNetworkComponents({fileEntryAt(""), fileEntryAt("")}),
                IsStatus(INVALID_MODEL_PATH, "No Model Path Defined"));
}

TEST(NetworkComponents, AnEmptyWeightsPathAnswers5NoWeightsPathDefined) {
    EXPECT_THAT(checkNetworkComponents({fileEntryAt("a"), fileEntryAt("")}),
                IsStatus(INVALID_WEIGHTS_PATH, "No Weights Path Defined"));
}

TEST(NetworkComponents, TwoPathsPassAndFurtherOnesAreNotChecked) {
    EXPECT_THAT(checkNetworkComponents({fileEntryAt("a"), fileEntryAt("b")}), IsOk());
    EXPECT_THAT(checkNetworkComponents({fileEntryAt("a"), fileEntryAt("b"), fileEntryAt("")}),
                IsOk());
}

}  // namespace
}  // namespace VelmoraQuavin::testing
