// Manifests nested about as deeply as is allowed, which would exhaust the stack of a recursive
// reader.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "unit/package/manifest/manifest_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::IsOk;
using testing::IsStatus;

// Three of these fit into the number of values that a manifest may have.
constexpr std::size_t kDepth = 20'000;

std::string repeat(const std::string& text) {
    std::string repeated;
    repeated.reserve(text.size() * kDepth);
    for (std::size_t count = 0; count < kDepth; ++count) {
        repeated += text;
    }
    return repeated;
}

std::string nestedArrays() {
    return repeat("[") + repeat("]");
}

std::string nestedObjects() {
    return repeat(R"({"a":)") + "0" + repeat("}");
}

using ManifestNesting = testing::ManifestFixture;

TEST_F(ManifestNesting, UnclosedNestingFails) {
    EXPECT_THAT(load(repeat("[")), IsStatus(MODEL_METADATA_ERROR, failedToOpen()));
    EXPECT_THAT(load(repeat(R"({"a":)")), IsStatus(MODEL_METADATA_ERROR, failedToOpen()));
}

TEST_F(ManifestNesting, UnclosedNestingInsideTargetsFails) {
    EXPECT_THAT(load(R"({"targets": )" + repeat("[")),
                IsStatus(MODEL_METADATA_ERROR, failedToOpen()));
    EXPECT_THAT(load(R"({"targets": {"Openvino": {"inputs": )" + repeat("[")),
                IsStatus(MODEL_METADATA_ERROR, failedToOpen()));
}

TEST_F(ManifestNesting, NestedArraysAsRootFail) {
    EXPECT_THAT(load(nestedArrays()), IsStatus(MODEL_METADATA_ERROR, failedToOpen()));
}

TEST_F(ManifestNesting, NestedObjectsWithoutTargetsFail) {
    EXPECT_THAT(load(nestedObjects()),
                IsStatus(MODEL_METADATA_ERROR, "No target found in root of manifest file"));
}

TEST_F(ManifestNesting, NestingInOtherMembersIsIgnored) {
    EXPECT_THAT(load(R"({"more": )" + nestedArrays() + R"(, "id": )" + nestedObjects() +
                     R"(, "targets": {}})"),
                IsOk());
    EXPECT_EQ(metadata_.getId(), "");
}

TEST_F(ManifestNesting, NestingInsideTargetsIsIgnored) {
    EXPECT_THAT(load(R"({"targets": )" + nestedArrays() + "}"), IsOk());
    EXPECT_TRUE(metadata_.getTargets().empty());
}

TEST_F(ManifestNesting, NestingInsideATargetGivesDefaults) {
    const ModelTarget target = loadTarget(R"({"components": [)" + nestedObjects() +
                                          R"(], "inputs": )" + nestedArrays() + "}");
    ASSERT_EQ(target.components.size(), 1u);
    EXPECT_EQ(target.components[0].path, "");
    ASSERT_EQ(target.inputs.size(), 1u);
    EXPECT_EQ(target.inputs[0].name(), "");
}

TEST_F(ManifestNesting, NestingInsideAShapeGivesNoShape) {
    const ModelFeatureDescriptor input =
        loadInput(R"({"featureType": "tensor", "tensor": {"shape": )" + nestedArrays() + "}}");
    EXPECT_EQ(input.tensorDescriptor().shape().dimension(), 0u);
}

}  // namespace
}  // namespace VelmoraQuavin
