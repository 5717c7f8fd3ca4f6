#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unit/package/manifest/manifest_fixture.h"

namespace VelmoraQuavin {
namespace {

class ManifestComponents : public testing::ManifestFixture {
protected:
    std::vector<ModelComponent> loadComponents(const std::string& value) {
        return loadTarget(R"({"components": )" + value + "}").components;
    }
    static void expectKeyOfZeros(const ModelComponent& component) {
        EXPECT_EQ(String(component.encryption.getKey(), 16), std::string(16, '\0'));
        EXPECT_EQ(component.encryption.getPaddingType(), static_cast<PaddingType>(0));
    }
};

TEST_F(ManifestComponents, ComponentsAreReadInOrder) {
    const auto components = loadComponents(R"([{"name": "file", "path": "b/net.xml"},
                                               {"path": "a\\net.bin", "name": "secured_file"}])");
    ASSERT_EQ(components.size(), 2u);
    EXPECT_EQ(components[0].name, "file");
    EXPECT_EQ(components[0].path, "b/net.xml");
    EXPECT_EQ(components[1].name, "secured_file");
    EXPECT_EQ(components[1].path, "a\\net.bin");
}

TEST_F(ManifestComponents, DuplicatesAreKept) {
    const auto components =
        loadComponents(R"([{"name": "file", "path": "a"}, {"name": "file", "path": "a"}])");
    ASSERT_EQ(components.size(), 2u);
    EXPECT_EQ(components[1].name, "file");
    EXPECT_EQ(components[1].path, "a");
}

TEST_F(ManifestComponents, AnyKindIsAccepted) {
    const auto components = loadComponents(R"([{"name": "memory_stream"}, {"name": "secured_tar"},
                                               {"name": "File"}, {"name": "something else"}])");
    ASSERT_EQ(components.size(), 4u);
    EXPECT_EQ(components[0].name, "memory_stream");
    EXPECT_EQ(components[1].name, "secured_tar");
    EXPECT_EQ(components[2].name, "File");
    EXPECT_EQ(components[3].name, "something else");
}

TEST_F(ManifestComponents, MissingMembersAreEmpty) {
    const auto components = loadComponents(R"([{}, {"name": "file"}, {"path": "a"}])");
    ASSERT_EQ(components.size(), 3u);
    EXPECT_EQ(components[0].name, "");
    EXPECT_EQ(components[0].path, "");
    EXPECT_EQ(components[1].name, "file");
    EXPECT_EQ(components[1].path, "");
    EXPECT_EQ(components[2].name, "");
    EXPECT_EQ(components[2].path, "a");
    for (const ModelComponent& component : components) {
        expectKeyOfZeros(component);
    }
}

TEST_F(ManifestComponents, MembersThatAreNotStringsAreEmpty) {
    const auto components =
        loadComponents(R"([{"name": 3, "path": null}, {"name": ["file"], "path": {"path": "a"}}])");
    ASSERT_EQ(components.size(), 2u);
    for (const ModelComponent& component : components) {
        EXPECT_EQ(component.name, "");
        EXPECT_EQ(component.path, "");
    }
}

TEST_F(ManifestComponents, TextsEndAtTheFirstZeroCharacter) {
    const auto components = loadComponents(R"([{"name": "file\u0000x", "path": "a\u0000b"}])");
    ASSERT_EQ(components.size(), 1u);
    EXPECT_EQ(components[0].name, "file");
    EXPECT_EQ(components[0].path, "a");
}

TEST_F(ManifestComponents, ElementsThatAreNotObjectsGiveDefaults) {
    const auto components = loadComponents(R"([null, "file", 3, [], {"path": "a"}])");
    ASSERT_EQ(components.size(), 5u);
    EXPECT_EQ(components[1].name, "");
    EXPECT_EQ(components[1].path, "");
    EXPECT_EQ(components[4].path, "a");
}

TEST_F(ManifestComponents, AnythingButAnArrayGivesNoComponents) {
    for (const char* value : {"{}", R"({"name": "file", "path": "a"})", R"("file")", "null", "3"}) {
        EXPECT_TRUE(loadComponents(value).empty()) << value;
    }
    EXPECT_TRUE(loadComponents("[]").empty());
    EXPECT_TRUE(loadTarget("{}").components.empty());
}

TEST_F(ManifestComponents, TheKeyIsZeroWhateverEncryptionSays) {
    const auto components = loadComponents(
        R"([{"encryption": false}, {"encryption": "aes"}, {"encryption": null},
            {"encryption": {"key": "00112233445566778899aabbccddeeff", "paddingType": 1}},
            {"encryption": "pkcs7"}, {}])");
    ASSERT_EQ(components.size(), 6u);
    for (const ModelComponent& component : components) {
        expectKeyOfZeros(component);
    }
}

TEST_F(ManifestComponents, TheHostSetsTheKey) {
    ASSERT_EQ(loadComponents(R"([{"name": "secured_file", "encryption": false}])").size(), 1u);
    const unsigned char key[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    metadata_.getTargets().at(QuavinModelType::Openvino).components[0].setCryptoKey(key);
    const ModelMetadata copy = metadata_;
    EXPECT_EQ(
        String(copy.getTargets().at(QuavinModelType::Openvino).components[0].encryption.getKey(),
               16),
        String(key, 16));
}

}  // namespace
}  // namespace VelmoraQuavin
