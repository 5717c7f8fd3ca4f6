#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "feature/descriptor_access.h"
#include "quavin/tensor.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kVariable =
    "Attempting to infer a tensor shape from a variable-shaped tensor.";

TEST(TensorDescriptorTest, IsEmptyByDefault) {
    const TensorDescriptor descriptor;
    EXPECT_TRUE(descriptor.name().empty());
    EXPECT_THAT(descriptor.shape().shapeVector(), IsEmpty());
    EXPECT_FALSE(descriptor.variableShape());
    EXPECT_EQ(descriptor.tensorType(), DataType::UNDEFINED);
}

TEST(TensorDescriptorTest, HasNoNameIfBuiltFromShapeAndType) {
    const TensorDescriptor descriptor(TensorShape(2, 3), DataType::INT16);
    EXPECT_TRUE(descriptor.name().empty());
    EXPECT_THAT(descriptor.shape().shapeVector(), ElementsAre(2, 3));
    EXPECT_EQ(descriptor.tensorType(), DataType::INT16);
}

TEST(TensorDescriptorTest, StoresItsArguments) {
    const TensorDescriptor descriptor("data", TensorShape(2, 3), false, DataType::FLOAT);
    EXPECT_EQ(descriptor.name(), "data");
    EXPECT_THAT(descriptor.shape().shapeVector(), ElementsAre(2, 3));
    EXPECT_EQ(descriptor.tensorType(), DataType::FLOAT);
}

TEST(TensorDescriptorTest, CopiesTheShape) {
    TensorShape shape(2, 3);
    const TensorDescriptor descriptor(shape, DataType::FLOAT);
    shape[0] = 7;
    EXPECT_THAT(descriptor.shape().shapeVector(), ElementsAre(2, 3));
}

TEST(TensorDescriptorTest, ADimensionOfMinusOneMakesTheShapeVariableRegardlessOfTheFlag) {
    const TensorShape variable(1, -1, 3);
    EXPECT_TRUE(TensorDescriptor(variable, DataType::FLOAT).variableShape());
    EXPECT_TRUE(TensorDescriptor("data", variable, false, DataType::FLOAT).variableShape());
    EXPECT_TRUE(TensorDescriptor("data", variable, true, DataType::FLOAT).variableShape());
}

TEST(TensorDescriptorTest, AVariableDimensionCountsInAnyPosition) {
    EXPECT_TRUE(TensorDescriptor(TensorShape(-1), DataType::FLOAT).variableShape());
    EXPECT_TRUE(TensorDescriptor(TensorShape(-1, 2, 3), DataType::FLOAT).variableShape());
    EXPECT_TRUE(TensorDescriptor(TensorShape(1, 2, -1), DataType::FLOAT).variableShape());
    EXPECT_TRUE(TensorDescriptor(TensorShape(-1, -1), DataType::FLOAT).variableShape());
}

TEST(TensorDescriptorTest, OtherNegativeDimensionsAreNotVariable) {
    const TensorDescriptor descriptor(TensorShape(0, -2), DataType::FLOAT);
    EXPECT_FALSE(descriptor.variableShape());
    EXPECT_THAT(descriptor.shape().shapeVector(), ElementsAre(0, -2));
}

TEST(TensorDescriptorTest, TheFlagAloneDoesNotMakeTheShapeVariable) {
    const TensorDescriptor descriptor("data", TensorShape(2, 3), true, DataType::FLOAT);
    EXPECT_FALSE(descriptor.variableShape());
    EXPECT_THAT(descriptor.shape().shapeVector(), ElementsAre(2, 3));
}

TEST(TensorDescriptorTest, AnEmptyShapeIsNotVariable) {
    EXPECT_FALSE(TensorDescriptor("data", TensorShape(), true, DataType::FLOAT).variableShape());
}

TEST(TensorDescriptorTest, ReadingAVariableShapeThrows) {
    const TensorDescriptor descriptor("data", TensorShape(1, -1, 3), false, DataType::FLOAT);
    testing::expectThrows<InvalidOperationException>([&] { descriptor.shape(); }, INVALID_OPERATION,
                                                     kVariable);
}

TEST(TensorDescriptorTest, TheLibraryCanReadAVariableShape) {
    const TensorDescriptor descriptor(TensorShape(1, -1, 3), DataType::FLOAT);
    EXPECT_THAT(internal::DescriptorAccess::shape(descriptor).shapeVector(), ElementsAre(1, -1, 3));
}

TEST(TensorDescriptorTest, CopiesAreIndependent) {
    TensorDescriptor original("data", TensorShape(2, 3), false, DataType::FLOAT);
    const TensorDescriptor copy = original;
    original = TensorDescriptor();
    EXPECT_EQ(copy.name(), "data");
    EXPECT_THAT(copy.shape().shapeVector(), ElementsAre(2, 3));
    EXPECT_EQ(copy.tensorType(), DataType::FLOAT);
}

}  // namespace
}  // namespace VelmoraQuavin
