// The lists of inputs and outputs, and the members that all features have.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "unit/package/manifest/manifest_fixture.h"

namespace VelmoraQuavin {
namespace {

constexpr auto kTypeNotSet = static_cast<QuavinFeatureType>(7);

using ManifestFeatureLists = testing::ManifestFixture;
using ManifestFeature = testing::ManifestFixture;

TEST_F(ManifestFeatureLists, FeaturesAndTheirNamesAreReadInOrder) {
    const ModelTarget target = loadTarget(R"({
        "inputs": [{"name": "b", "featureType": "bool"}, {"name": "a"}],
        "outputs": [{"name": "d"}, {"name": "c"}, {"name": "e", "featureType": "int64"}]})");
    ASSERT_EQ(target.inputs.size(), 2u);
    EXPECT_EQ(target.inputs[0].name(), "b");
    EXPECT_EQ(target.inputs[0].type(), QuavinFeatureType::BOOL);
    EXPECT_EQ(target.inputs[1].name(), "a");
    EXPECT_EQ(target.inputNames, (std::vector<String>{"b", "a"}));
    ASSERT_EQ(target.outputs.size(), 3u);
    EXPECT_EQ(target.outputs[2].name(), "e");
    EXPECT_EQ(target.outputs[2].type(), QuavinFeatureType::INT64);
    EXPECT_EQ(target.outputNames, (std::vector<String>{"d", "c", "e"}));
}

TEST_F(ManifestFeatureLists, DuplicateNamesAreKept) {
    const ModelTarget target =
        loadTarget(R"({"inputs": [{"name": "a"}, {"name": "a"}], "outputs": [{"name": "a"}]})");
    EXPECT_EQ(target.inputs.size(), 2u);
    EXPECT_EQ(target.inputNames, (std::vector<String>{"a", "a"}));
    EXPECT_EQ(target.outputNames, (std::vector<String>{"a"}));
}

TEST_F(ManifestFeatureLists, AnEmptyArrayAnObjectOrAnythingElseGivesAnEmptyList) {
    for (const std::string value :
         {"[]", "{}", R"({"name": "a"})", R"("a")", "null", "true", "3"}) {
        const ModelTarget target =
            loadTarget(R"({"inputs": )" + value + R"(, "outputs": )" + value + "}");
        EXPECT_TRUE(target.inputs.empty()) << value;
        EXPECT_TRUE(target.inputNames.empty()) << value;
        EXPECT_TRUE(target.outputs.empty()) << value;
        EXPECT_TRUE(target.outputNames.empty()) << value;
    }
}

TEST_F(ManifestFeatureLists, MissingListsAreEmpty) {
    const ModelTarget target = loadTarget("{}");
    EXPECT_TRUE(target.inputs.empty());
    EXPECT_TRUE(target.inputNames.empty());
    EXPECT_TRUE(target.outputs.empty());
    EXPECT_TRUE(target.outputNames.empty());
}

TEST_F(ManifestFeatureLists, ElementsThatAreNotObjectsGiveDefaults) {
    const ModelTarget target = loadTarget(R"({"inputs": [null, "a", [], 3, {"name": "b"}]})");
    ASSERT_EQ(target.inputs.size(), 5u);
    EXPECT_EQ(target.inputNames, (std::vector<String>{"", "", "", "", "b"}));
    EXPECT_EQ(target.inputs[1].type(), kTypeNotSet);
    EXPECT_TRUE(target.inputs[1].required());
}

TEST_F(ManifestFeature, AnEmptyObjectGivesDefaults) {
    const ModelFeatureDescriptor feature = loadInput("{}");
    EXPECT_EQ(feature.name(), "");
    EXPECT_EQ(feature.description(), "");
    EXPECT_TRUE(feature.required());
    EXPECT_EQ(feature.type(), kTypeNotSet);
    EXPECT_EQ(feature.tensorDescriptor().shape().dimension(), 0u);
    EXPECT_EQ(feature.tensorDescriptor().tensorType(), DataType::UNDEFINED);
}

TEST_F(ManifestFeature, NameAndDescriptionAreRead) {
    const ModelFeatureDescriptor feature =
        loadInput(R"({"name": "picture", "description": "what is looked at"})");
    EXPECT_EQ(feature.name(), "picture");
    EXPECT_EQ(feature.description(), "what is looked at");
}

TEST_F(ManifestFeature, TheTensorHasTheFeaturesName) {
    EXPECT_EQ(
        loadInput(R"({"name": "picture", "featureType": "tensor"})").tensorDescriptor().name(),
        "picture");
}

TEST_F(ManifestFeature, TextsEndAtTheFirstZeroCharacter) {
    const ModelTarget target =
        loadTarget(R"({"inputs": [{"name": "a\u0000b", "description": "c\u0000d"}]})");
    EXPECT_EQ(target.inputs.at(0).name(), "a");
    EXPECT_EQ(target.inputs.at(0).description(), "c");
    EXPECT_EQ(target.inputNames.at(0), "a");
}

TEST_F(ManifestFeature, TextsThatAreNotStringsAreEmpty) {
    for (const std::string value : {"null", "true", "3", R"(["a"])", R"({"a": "b"})"}) {
        const ModelFeatureDescriptor feature =
            loadInput(R"({"name": )" + value + R"(, "description": )" + value + "}");
        EXPECT_EQ(feature.name(), "") << value;
        EXPECT_EQ(feature.description(), "") << value;
    }
}

TEST_F(ManifestFeature, RequiredIsReadFromABoolean) {
    EXPECT_TRUE(loadInput(R"({"required": true})").required());
    EXPECT_FALSE(loadInput(R"({"required": false})").required());
    EXPECT_FALSE(loadInput(R"({"required": false, "featureType": "tensor"})").required());
    EXPECT_FALSE(loadInput(R"({"required": false, "featureType": "image"})").required());
}

TEST_F(ManifestFeature, WithoutABooleanAFeatureIsRequired) {
    for (const std::string value : {"null", "0", R"("false")", "[false]", "{}"}) {
        EXPECT_TRUE(loadInput(R"({"required": )" + value + "}").required()) << value;
    }
    EXPECT_TRUE(loadInput(R"({"featureType": "tensor", "tensor": {"shape": [1]}})").required());
    EXPECT_TRUE(loadInput(R"({"featureType": "image", "image": {"height": 1}})").required());
}

TEST_F(ManifestFeature, EachOfTheSevenTypesIsRead) {
    const std::vector<std::pair<std::string, int>> types = {
        {"bool", 0},   {"uint8", 1},  {"int64", 2}, {"double", 3},
        {"string", 4}, {"tensor", 5}, {"image", 6}};
    for (const auto& [name, number] : types) {
        const ModelFeatureDescriptor feature = loadInput(R"({"featureType": ")" + name + "\"}");
        EXPECT_EQ(static_cast<int>(feature.type()), number) << name;
        EXPECT_EQ(feature.tensorDescriptor().shape().dimension(), 0u) << name;
        EXPECT_EQ(feature.tensorDescriptor().tensorType(), DataType::UNDEFINED) << name;
    }
}

TEST_F(ManifestFeature, AnUnknownTypeNameGivesNoType) {
    for (const std::string name : {"", "Bool", "TENSOR", "tensor ", "float", "int32", "unknown"}) {
        EXPECT_EQ(loadInput(R"({"featureType": ")" + name + "\"}").type(), kTypeNotSet) << name;
    }
}

TEST_F(ManifestFeature, ATypeThatIsNotAStringGivesNoType) {
    for (const std::string value : {"5", "null", "true", R"(["tensor"])", "{}"}) {
        EXPECT_EQ(loadInput(R"({"featureType": )" + value + "}").type(), kTypeNotSet) << value;
    }
}

}  // namespace
}  // namespace VelmoraQuavin
