#include "tensor/element_size.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

namespace VelmoraQuavin::internal {
namespace {

constexpr int64 kMin = std::numeric_limits<int64>::min();
constexpr int64 kMax = std::numeric_limits<int64>::max();
constexpr std::size_t kUnobtainable = std::numeric_limits<std::size_t>::max();

TEST(DataTypeTest, NumbersNeverChange) {
    EXPECT_EQ(static_cast<int>(DataType::UNDEFINED), 0);
    EXPECT_EQ(static_cast<int>(DataType::BOOL), 1);
    EXPECT_EQ(static_cast<int>(DataType::INT8), 2);
    EXPECT_EQ(static_cast<int>(DataType::UINT8), 3);
    EXPECT_EQ(static_cast<int>(DataType::INT16), 4);
    EXPECT_EQ(static_cast<int>(DataType::UINT16), 5);
    EXPECT_EQ(static_cast<int>(DataType::INT32), 6);
    EXPECT_EQ(static_cast<int>(DataType::UINT32), 7);
    EXPECT_EQ(static_cast<int>(DataType::INT64), 8);
    EXPECT_EQ(static_cast<int>(DataType::UINT64), 9);
    EXPECT_EQ(static_cast<int>(DataType::FLOAT16), 10);
    EXPECT_EQ(static_cast<int>(DataType::FLOAT), 11);
    EXPECT_EQ(static_cast<int>(DataType::DOUBLE), 12);
    EXPECT_EQ(sizeof(DataType), 4U);
}

TEST(ElementSizeTest, MatchesTheType) {
    EXPECT_EQ(elementSize(DataType::BOOL), 1);
    EXPECT_EQ(elementSize(DataType::INT8), 1);
    EXPECT_EQ(elementSize(DataType::UINT8), 1);
    EXPECT_EQ(elementSize(DataType::INT16), 2);
    EXPECT_EQ(elementSize(DataType::UINT16), 2);
    EXPECT_EQ(elementSize(DataType::INT32), 4);
    EXPECT_EQ(elementSize(DataType::UINT32), 4);
    EXPECT_EQ(elementSize(DataType::INT64), 8);
    EXPECT_EQ(elementSize(DataType::UINT64), 8);
    EXPECT_EQ(elementSize(DataType::FLOAT16), 2);
    EXPECT_EQ(elementSize(DataType::FLOAT), 4);
    EXPECT_EQ(elementSize(DataType::DOUBLE), 8);
}

TEST(ElementSizeTest, IsZeroForUnknownTypes) {
    for (const std::int32_t number : {0, 13, -1, 1000, std::numeric_limits<std::int32_t>::min(),
                                      std::numeric_limits<std::int32_t>::max()}) {
        EXPECT_EQ(elementSize(static_cast<DataType>(number)), 0) << number;
    }
}

TEST(ByteCountTest, IsElementCountTimesElementSize) {
    EXPECT_EQ(byteCount(DataType::FLOAT, TensorShape(2, 3)), 24);
    EXPECT_EQ(byteCount(DataType::UNDEFINED, TensorShape(2, 3)), 0);
    EXPECT_EQ(byteCount(DataType::DOUBLE, TensorShape()), 8);
}

TEST(ByteCountTest, WrapsOnOverflow) {
    EXPECT_EQ(byteCount(DataType::FLOAT, TensorShape(int64{1} << 62)), 0);     // 2^64
    EXPECT_EQ(byteCount(DataType::FLOAT, TensorShape(int64{1} << 61)), kMin);  // 2^63
    EXPECT_EQ(byteCount(DataType::INT16, TensorShape(kMax)), -2);              // 2^64 - 2
}

TEST(ExactByteCountTest, IsElementCountTimesElementSize) {
    EXPECT_EQ(exactByteCount(DataType::FLOAT, TensorShape(2, 3)), 24);
    EXPECT_EQ(exactByteCount(DataType::DOUBLE, TensorShape()), 8);
    EXPECT_EQ(exactByteCount(DataType::UINT8, TensorShape(kMax)), kMax);
}

TEST(ExactByteCountTest, HasTheSignOfTheDimensionsProduct) {
    EXPECT_EQ(exactByteCount(DataType::FLOAT, TensorShape(1, -1, 3)), -12);
    EXPECT_EQ(exactByteCount(DataType::FLOAT, TensorShape(-1, -1, 3)), 12);
    EXPECT_EQ(exactByteCount(DataType::UINT8, TensorShape(-kMax)), -kMax);
}

TEST(ExactByteCountTest, IsMissingIfItDoesNotFit) {
    EXPECT_EQ(exactByteCount(DataType::FLOAT, TensorShape(int64{1} << 61)), std::nullopt);
    EXPECT_EQ(exactByteCount(DataType::FLOAT, TensorShape(int64{1} << 62)), std::nullopt);
    EXPECT_EQ(exactByteCount(DataType::UINT8, TensorShape(kMax, 2)), std::nullopt);
    EXPECT_EQ(exactByteCount(DataType::UINT8, TensorShape(kMin)), std::nullopt);
    EXPECT_EQ(exactByteCount(DataType::UINT8, TensorShape(kMin, kMin)), std::nullopt);
    EXPECT_EQ(exactByteCount(DataType::UINT8, TensorShape(kMax, kMax, kMax)), std::nullopt);
}

TEST(ExactByteCountTest, IsZeroIfAnyDimensionIsZero) {
    EXPECT_EQ(exactByteCount(DataType::FLOAT, TensorShape(0, kMax, kMax)), 0);
    EXPECT_EQ(exactByteCount(DataType::FLOAT, TensorShape(kMax, kMax, 0)), 0);
    EXPECT_EQ(exactByteCount(DataType::FLOAT, TensorShape(-1, 0)), 0);
}

TEST(ExactByteCountTest, IsZeroWithoutAType) {
    EXPECT_EQ(exactByteCount(DataType::UNDEFINED, TensorShape(kMax, kMax)), 0);
}

TEST(ByteCountToAllocateTest, IsTheByteCount) {
    EXPECT_EQ(byteCountToAllocate(DataType::FLOAT, TensorShape(2, 3)), 24U);
    EXPECT_EQ(byteCountToAllocate(DataType::FLOAT, TensorShape(0)), 0U);
}

TEST(ByteCountToAllocateTest, IsUnobtainableIfTheCountIsNegativeOrDoesNotFit) {
    EXPECT_EQ(byteCountToAllocate(DataType::FLOAT, TensorShape(1, -1)), kUnobtainable);
    EXPECT_EQ(byteCountToAllocate(DataType::FLOAT, TensorShape(int64{1} << 62)), kUnobtainable);
    EXPECT_EQ(byteCountToAllocate(DataType::UINT8, TensorShape(kMin)), kUnobtainable);
}

}  // namespace
}  // namespace VelmoraQuavin::internal
