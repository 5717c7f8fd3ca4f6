#include "c/port.h"

#include <gtest/gtest.h>

namespace VelmoraQuavin::internal {
namespace {

Port portOf(const TensorShape& shape, DataType type) {
    return Port(ModelFeatureDescriptor(QuavinFeatureType::TENSOR, TensorDescriptor(shape, type)));
}

TEST(Port, HasTheBytesOfItsElements) {
    EXPECT_EQ(portOf({2, 3}, DataType::FLOAT).bytes(), 24U);
    EXPECT_EQ(portOf({2, 3}, DataType::INT8).bytes(), 6U);
    EXPECT_EQ(portOf({}, DataType::INT32).bytes(), 4U);
}

TEST(Port, HasNoBytesIfItsShapeIsVariable) {
    EXPECT_EQ(portOf({-1, 3}, DataType::FLOAT).bytes(), 0U);
}

// Four times this, times four bytes, wraps to 16.
TEST(Port, HasNoBytesIfThereAreMoreThanCanBe) {
    EXPECT_EQ(portOf({4, (int64{1} << 62) + 1}, DataType::FLOAT).bytes(), 0U);
    EXPECT_EQ(portOf({-4, 1}, DataType::FLOAT).bytes(), 0U);
}

}  // namespace
}  // namespace VelmoraQuavin::internal
