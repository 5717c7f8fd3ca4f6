#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "quavin/feature.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;

ModelFeatureDescriptor tensorOf(const TensorShape& shape, DataType type = DataType::FLOAT) {
    return {QuavinFeatureType::TENSOR, TensorDescriptor(shape, type)};
}

TEST(QuavinFeatureTensorTest, CreatesAZeroFilledTensorFromItsDescriptor) {
    QuavinFeatureTensor feature(tensorOf(TensorShape(1, 3, 2, 2)));
    const std::shared_ptr<ITensor> tensor = feature.asTensor();
    ASSERT_NE(tensor, nullptr);
    EXPECT_NE(dynamic_cast<Tensor*>(tensor.get()), nullptr);
    EXPECT_EQ(tensor->dataType(), DataType::FLOAT);
    EXPECT_THAT(tensor->shape().shapeVector(), ElementsAre(1, 3, 2, 2));
    ASSERT_EQ(tensor->bytes(), 48);
    ASSERT_NE(tensor->buffer(), nullptr);
    EXPECT_EQ(std::vector<int>(tensor->buffer(), tensor->buffer() + 48), std::vector<int>(48, 0));
}

TEST(QuavinFeatureTensorTest, ItsTensorSupportsSharedFromThis) {
    QuavinFeatureTensor feature(tensorOf(TensorShape(2)));
    EXPECT_EQ(feature.asTensor()->shared_from_this(), feature.asTensor());
}

TEST(QuavinFeatureTensorTest, RefusesAVariableShape) {
    testing::expectThrows<InvalidOperationException>(
        [] { QuavinFeatureTensor feature(tensorOf(TensorShape(1, -1))); }, INVALID_OPERATION,
        "Attempting to infer a tensor shape from a variable-shaped tensor.");
}

TEST(QuavinFeatureTensorTest, AnUnallocatableShapeThrows) {
    EXPECT_THROW(QuavinFeatureTensor(tensorOf(TensorShape(int64{1} << 62))), std::bad_alloc);
    EXPECT_THROW(QuavinFeatureTensor(tensorOf(TensorShape(-2))), std::bad_alloc);
}

TEST(QuavinFeatureTensorTest, SharesTheGivenTensor) {
    const auto tensor = std::make_shared<Tensor>(DataType::UINT8, TensorShape(4));
    QuavinFeatureTensor feature(tensorOf(TensorShape(4), DataType::UINT8), tensor);
    EXPECT_EQ(feature.asTensor(), tensor);
    EXPECT_EQ(std::as_const(feature).asTensor(), tensor);

    feature.asTensor()->buffer()[2] = 9;
    EXPECT_EQ(tensor->buffer()[2], 9);
}

TEST(QuavinFeatureTensorTest, DoesNotCheckTheGivenTensorAgainstTheDescriptor) {
    const auto tensor = std::make_shared<Tensor>(DataType::UINT8, TensorShape(7));
    QuavinFeatureTensor feature(tensorOf(TensorShape(1, -1)), tensor);
    EXPECT_EQ(feature.asTensor()->bytes(), 7);
    EXPECT_TRUE(feature.featureDescriptor().tensorDescriptor().variableShape());
}

TEST(QuavinFeatureTensorTest, MayHoldNoTensor) {
    QuavinFeatureTensor feature(tensorOf(TensorShape(1, 2)), nullptr);
    EXPECT_EQ(feature.asTensor(), nullptr);
    EXPECT_EQ(std::as_const(feature).asTensor(), nullptr);
}

TEST(QuavinFeatureTensorTest, KeepsItsTensorAlive) {
    auto tensor = std::make_shared<Tensor>(DataType::UINT8, TensorShape(4));
    const std::weak_ptr<Tensor> watched = tensor;
    auto feature = std::make_unique<QuavinFeatureTensor>(tensorOf(TensorShape(4)), tensor);
    tensor.reset();
    EXPECT_FALSE(watched.expired());
    feature.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(QuavinFeatureTensorTest, TheTensorMayOutliveTheFeature) {
    auto feature = std::make_unique<QuavinFeatureTensor>(tensorOf(TensorShape(2)));
    const std::shared_ptr<ITensor> tensor = feature->asTensor();
    feature.reset();
    EXPECT_EQ(tensor->bytes(), 8);
}

}  // namespace
}  // namespace VelmoraQuavin
