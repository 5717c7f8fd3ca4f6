// A complete manifest, with every field compared.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unit/package/manifest/manifest_fixture.h"

namespace VelmoraQuavin {
namespace {

constexpr const char* kManifest = R"({
  "id": "face-detect",
  "name": "Face detector",
  "author": "Vision team",
  "description": "Finds faces",
  "sdkVersion": "1.0",
  "version": 3,
  "targets": {
    "Openvino": {
      "components": [
        { "name": "secured_file", "path": "model.xml", "encryption": "aes" },
        { "name": "secured_file", "path": "model.bin", "encryption": "aes" }
      ],
      "inputs": [
        { "name": "image", "description": "input picture", "required": true, "featureType": "tensor",
          "tensor": { "shape": [1, 3, 300, 300], "dataType": "float" } }
      ],
      "outputs": [
        { "name": "detections", "featureType": "tensor",
          "tensor": { "shape": [1, 1, 200, 7], "dataType": "float" } }
      ]
    }
  }
}
)";

using Dimensions = std::vector<int64>;
using ManifestExample = testing::ManifestFixture;

void expectTensorFeature(const ModelFeatureDescriptor& feature, const char* name,
                         const char* description, const Dimensions& shape) {
    EXPECT_EQ(feature.name(), name);
    EXPECT_EQ(feature.description(), description);
    EXPECT_TRUE(feature.required());
    EXPECT_EQ(feature.type(), QuavinFeatureType::TENSOR);
    EXPECT_FALSE(feature.tensorDescriptor().variableShape());
    EXPECT_EQ(feature.tensorDescriptor().shape().shapeVector(), shape);
    EXPECT_EQ(feature.tensorDescriptor().tensorType(), DataType::FLOAT);
}

TEST_F(ManifestExample, EveryFieldIsRead) {
    ASSERT_THAT(load(kManifest), testing::IsOk());
    EXPECT_EQ(metadata_.getId(), "face-detect");
    EXPECT_EQ(metadata_.getName(), "Face detector");
    EXPECT_EQ(metadata_.getAuthor(), "Vision team");
    EXPECT_EQ(metadata_.getDescription(), "Finds faces");
    EXPECT_EQ(metadata_.getSdkVersion(), "1.0");
    EXPECT_EQ(metadata_.getVersion(), 3);
    EXPECT_EQ(metadata_.getScripts(), "");
    EXPECT_EQ(String(metadata_.getRootDir().c_str()), directory_.text());

    ASSERT_EQ(metadata_.getTargets().size(), 1u);
    const ModelTarget& target = metadata_.getTargets().at(QuavinModelType::Openvino);
    ASSERT_EQ(target.components.size(), 2u);
    EXPECT_EQ(target.components[0].path, "model.xml");
    EXPECT_EQ(target.components[1].path, "model.bin");
    for (const ModelComponent& component : target.components) {
        EXPECT_EQ(component.name, ComponentKind::SecuredFile);
        EXPECT_EQ(String(component.encryption.getKey(), 16), std::string(16, '\0'));
        EXPECT_EQ(component.encryption.getPaddingType(), PaddingType::NONE);
    }
    EXPECT_EQ(target.inputNames, std::vector<String>{"image"});
    ASSERT_EQ(target.inputs.size(), 1u);
    expectTensorFeature(target.inputs[0], "image", "input picture", {1, 3, 300, 300});
    EXPECT_EQ(target.outputNames, std::vector<String>{"detections"});
    ASSERT_EQ(target.outputs.size(), 1u);
    expectTensorFeature(target.outputs[0], "detections", "", {1, 1, 200, 7});
}

}  // namespace
}  // namespace VelmoraQuavin
