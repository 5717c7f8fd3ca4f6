// Manifests that a host has in memory; what they hold is read as from a file.

#include <gmock/gmock.h>

#include <string>

#include "unit/package/manifest/manifest_fixture.h"

namespace VelmoraQuavin::testing {
namespace {

class ManifestInMemory : public ManifestFixture {
protected:
    QuavinStatus loadFromMemory(const std::string& manifest) {
        return metadata_.loadFromMemory(manifest.data(), manifest.size());
    }
};

const std::string kManifestText =
    R"({"id": "an id", "name": "a name", "version": 3, "targets": {"Openvino": {)"
    R"("components": [{"name": "file", "path": "net.xml"}]}}})";

TEST_F(ManifestInMemory, HoldsWhatTheSameFileHolds) {
    ASSERT_THAT(loadFromMemory(kManifestText), IsOk());
    EXPECT_EQ(metadata_.getId(), "an id");
    EXPECT_EQ(metadata_.getName(), "a name");
    EXPECT_EQ(metadata_.getVersion(), 3);
    const ModelTarget& target = metadata_.getTargets().at(QuavinModelType::Openvino);
    ASSERT_EQ(target.components.size(), 1U);
    EXPECT_EQ(target.components[0].path, "net.xml");
}

TEST_F(ManifestInMemory, EmptiesTheRootDirectoryOfAnEarlierFile) {
    ASSERT_THAT(load(kManifestText), IsOk());
    ASSERT_THAT(loadFromMemory(kManifestText), IsOk());
    EXPECT_EQ(String(metadata_.getRootDir().c_str()), "");
}

TEST_F(ManifestInMemory, NeedsNoZeroByteAtItsEnd) {
    const std::string longer = kManifestText + "}";
    EXPECT_THAT(metadata_.loadFromMemory(longer.data(), kManifestText.size()), IsOk());
}

TEST_F(ManifestInMemory, NullAnswers7AndChangesNothing) {
    ASSERT_THAT(load(kManifestText), IsOk());
    EXPECT_THAT(metadata_.loadFromMemory(nullptr, 5),
                IsStatus(INVALID_ARGUMENTS, "There is no manifest to read"));
    EXPECT_EQ(String(metadata_.getRootDir().c_str()), directory_.text());
}

TEST_F(ManifestInMemory, BytesThatAreNoJsonObjectAnswer12AndChangeNothing) {
    ASSERT_THAT(load(kManifestText), IsOk());
    const std::string tooLarge = kManifestText + std::string(std::size_t{1} << 20, ' ');
    for (const std::string& bytes : {std::string(), std::string("["), std::string("[]"),
                                     kManifestText + '\0', kManifestText.substr(0, 40), tooLarge}) {
        EXPECT_THAT(loadFromMemory(bytes),
                    IsStatus(MODEL_METADATA_ERROR, "The bytes in memory are not a manifest"));
    }
    EXPECT_EQ(metadata_.getName(), "a name");
    EXPECT_EQ(String(metadata_.getRootDir().c_str()), directory_.text());
}

TEST_F(ManifestInMemory, WithoutTargetsAnswers12AndKeepsWhatWasRead) {
    EXPECT_THAT(loadFromMemory(R"({"name": "a name"})"),
                IsStatus(MODEL_METADATA_ERROR, "No target found in root of manifest file"));
    EXPECT_EQ(metadata_.getName(), "a name");
}

}  // namespace
}  // namespace VelmoraQuavin::testing
