// Which engines a manifest has targets for.

#include <gtest/gtest.h>

#include <string>

#include "unit/package/manifest/manifest_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::IsOk;

class ManifestTargets : public testing::ManifestFixture {
protected:
    std::string pathIn(QuavinModelType type) {
        return metadata_.getTargets().at(type).components.at(0).path.str();
    }
};

TEST_F(ManifestTargets, TargetsOfAllEnginesAreReadInAnyOrder) {
    ASSERT_THAT(load(R"({"targets": {
                    "MockML": {"components": [{"path": "mock"}]},
                    "TensorflowLite": {"components": [{"path": "lite"}]},
                    "Openvino": {"components": [{"path": "vino"}]},
                    "CoreML": {"components": [{"path": "core"}]},
                    "WinML": {"components": [{"path": "win"}]}}})"),
                IsOk());
    EXPECT_EQ(metadata_.getTargets().size(), 5u);
    EXPECT_EQ(pathIn(QuavinModelType::WinML), "win");
    EXPECT_EQ(pathIn(QuavinModelType::CoreML), "core");
    EXPECT_EQ(pathIn(QuavinModelType::Openvino), "vino");
    EXPECT_EQ(pathIn(QuavinModelType::TensorflowLite), "lite");
    EXPECT_EQ(pathIn(QuavinModelType::MockML), "mock");
}

TEST_F(ManifestTargets, TensorflowIsIgnored) {
    EXPECT_THAT(load(R"({"targets": {"Tensorflow": {"components": [{"path": "a"}]}}})"), IsOk());
    EXPECT_TRUE(metadata_.getTargets().empty());
}

TEST_F(ManifestTargets, UnknownEnginesAreIgnored) {
    EXPECT_THAT(load(R"({"targets": {"Onnx": {}, "Undefined": {}, "": {}}})"), IsOk());
    EXPECT_TRUE(metadata_.getTargets().empty());
}

TEST_F(ManifestTargets, KeysMustMatchExactly) {
    EXPECT_THAT(load(R"({"targets": {"OpenVino": {}, "OpenVINO": {}, "openvino": {}, "winml": {},
                         "CoreMl": {}, "TF-Lite": {}, "MOCK": {}, "Openvino\u0000": {}}})"),
                IsOk());
    EXPECT_TRUE(metadata_.getTargets().empty());
    EXPECT_THAT(load(R"({"targets": {"Openvino": {}}})"), IsOk());
    EXPECT_EQ(metadata_.getTargets().size(), 1u);
    EXPECT_EQ(metadata_.getTargets().count(QuavinModelType::Openvino), 1u);
}

TEST_F(ManifestTargets, AnArrayGivesNoTargets) {
    EXPECT_THAT(load(R"({"targets": ["Openvino", {"Openvino": {}}]})"), IsOk());
    EXPECT_TRUE(metadata_.getTargets().empty());
}

TEST_F(ManifestTargets, AnythingButAnObjectGivesNoTargets) {
    for (const std::string value : {"null", "false", "3", R"("Openvino")"}) {
        EXPECT_THAT(load(R"({"id": "an id", "targets": )" + value + "}"), IsOk());
        EXPECT_EQ(metadata_.getId(), "an id");
        EXPECT_TRUE(metadata_.getTargets().empty()) << value;
    }
}

TEST_F(ManifestTargets, ATargetThatIsNotAnObjectIsEmpty) {
    for (const char* value : {"null", "true", "3", R"("file")", R"([{"components": [{}]}])"}) {
        const ModelTarget target = loadTarget(value);
        EXPECT_TRUE(target.components.empty()) << value;
        EXPECT_TRUE(target.inputs.empty()) << value;
        EXPECT_TRUE(target.outputs.empty()) << value;
    }
}

TEST_F(ManifestTargets, ASecondManifestReplacesTheTargetsItNames) {
    ASSERT_THAT(load(R"({"targets": {"Openvino": {"components": [{"path": "first"}, {}]}}})"),
                IsOk());
    ASSERT_THAT(load(R"({"targets": {"Openvino": {"components": [{"path": "second"}]}}})"), IsOk());
    EXPECT_EQ(metadata_.getTargets().at(QuavinModelType::Openvino).components.size(), 1u);
    EXPECT_EQ(pathIn(QuavinModelType::Openvino), "second");
}

TEST_F(ManifestTargets, ASecondManifestKeepsTheTargetsItDoesNotName) {
    ASSERT_THAT(load(R"({"id": "first", "version": 3, "targets": {
                         "Openvino": {"components": [{"path": "a"}]}}})"),
                IsOk());
    ASSERT_THAT(load(R"({"name": "second", "targets": {"MockML": {}}})"), IsOk());
    EXPECT_EQ(metadata_.getTargets().size(), 2u);
    EXPECT_EQ(pathIn(QuavinModelType::Openvino), "a");
    ASSERT_THAT(load(R"({"targets": []})"), IsOk());
    EXPECT_EQ(metadata_.getTargets().size(), 2u);
    EXPECT_EQ(metadata_.getId(), "first");
    EXPECT_EQ(metadata_.getName(), "second");
    EXPECT_EQ(metadata_.getVersion(), 3);
}

}  // namespace
}  // namespace VelmoraQuavin
