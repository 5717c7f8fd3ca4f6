#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <numeric>
#include <utility>
#include <vector>

#include "quavin/tensor.h"
#include "support/case_name.h"
#include "support/status_matcher.h"
#include "unit/tensor/status_texts.h"

namespace VelmoraQuavin {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::IsOk;
using testing::IsStatus;

std::vector<int> bytesOf(const ITensor& tensor) {
    return {tensor.buffer(), tensor.buffer() + tensor.bytes()};
}

TEST(TensorTest, AShapeAllocatesZeroFilledMemory) {
    const Tensor tensor(DataType::FLOAT, TensorShape(2, 3));
    EXPECT_EQ(tensor.bytes(), 24);
    ASSERT_NE(tensor.buffer(), nullptr);
    EXPECT_THAT(bytesOf(tensor), Each(0));
    EXPECT_THAT(tensor.stride().shapeVector(), ElementsAre(3, 1));
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(2, 3));
}

TEST(TensorTest, AnEmptyShapeAllocatesOneElement) {
    const Tensor tensor(DataType::DOUBLE, TensorShape());
    EXPECT_EQ(tensor.bytes(), 8);
    ASSERT_NE(tensor.buffer(), nullptr);
    EXPECT_THAT(bytesOf(tensor), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(TensorTest, ATypeAloneAllocatesNoMemory) {
    Tensor tensor(DataType::UINT8);
    EXPECT_EQ(tensor.bytes(), 1);
    EXPECT_EQ(tensor.buffer(), nullptr);
    EXPECT_EQ(std::as_const(tensor).buffer(), nullptr);
    EXPECT_THAT(tensor.shape().shapeVector(), IsEmpty());
    EXPECT_THAT(tensor.stride().shapeVector(), IsEmpty());
}

TEST(TensorTest, BothBufferOverloadsReturnTheSameMemory) {
    Tensor tensor(DataType::UINT8, TensorShape(4));
    EXPECT_EQ(tensor.buffer(), std::as_const(tensor).buffer());
}

TEST(TensorTest, ATensorWithoutElementsHasANonNullBuffer) {
    Tensor tensor(DataType::FLOAT, TensorShape(2, 0));
    EXPECT_EQ(tensor.bytes(), 0);
    EXPECT_NE(tensor.buffer(), nullptr);
    EXPECT_THAT(tensor.resize(TensorShape(0, 7)), IsOk());
    EXPECT_THAT(tensor.resize(TensorShape(1)), IsStatus(TENSOR_SIZE_MISMATCH, testing::kMismatch));
}

TEST(TensorTest, AnUnknownTypeHasANonNullBuffer) {
    const Tensor tensor(DataType::UNDEFINED, TensorShape(2, 3));
    EXPECT_EQ(tensor.bytes(), 0);
    EXPECT_NE(tensor.buffer(), nullptr);
}

TEST(TensorTest, MemoryIsAlignedForTheEngine) {
    for (const int64 extent : {1, 3, 100, 5000}) {
        const Tensor tensor(DataType::UINT8, TensorShape(extent));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(tensor.buffer()) % 64, 0U) << extent;
    }
}

TEST(TensorTest, ResizeAllocatesZeroFilledMemoryIfThereIsNone) {
    Tensor tensor(DataType::UINT8);
    EXPECT_THAT(tensor.resize(TensorShape(4, 4)), IsOk());
    EXPECT_EQ(tensor.bytes(), 16);
    ASSERT_NE(tensor.buffer(), nullptr);
    EXPECT_EQ(bytesOf(tensor), std::vector<int>(16, 0));
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(4, 4));
}

TEST(TensorTest, ResizeToTheSameByteCountKeepsTheBytes) {
    Tensor tensor(DataType::UINT8, TensorShape(4, 4));
    std::iota(tensor.buffer(), tensor.buffer() + 16, static_cast<unsigned char>(1));
    const std::vector<int> before = bytesOf(tensor);
    const unsigned char* const memory = tensor.buffer();

    EXPECT_THAT(tensor.resize(TensorShape(2, 8)), IsOk());
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(2, 8));
    EXPECT_EQ(tensor.buffer(), memory);
    EXPECT_EQ(bytesOf(tensor), before);
}

TEST(TensorTest, ResizeToADifferentByteCountIsRefused) {
    Tensor tensor(DataType::UINT8, TensorShape(4, 4));
    EXPECT_THAT(tensor.resize(TensorShape(3, 3)),
                IsStatus(TENSOR_SIZE_MISMATCH, testing::kMismatch));
    EXPECT_THAT(tensor.resize(TensorShape(5, 5)),
                IsStatus(TENSOR_SIZE_MISMATCH, testing::kMismatch));
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(4, 4));
    EXPECT_EQ(tensor.bytes(), 16);
}

TEST(TensorTest, AllocateReplacesTheMemoryWithZeros) {
    Tensor tensor(DataType::UINT8, TensorShape(4));
    std::fill_n(tensor.buffer(), 4, static_cast<unsigned char>(7));
    EXPECT_TRUE(tensor.allocate(8));
    const std::vector<int> bytes(tensor.buffer(), tensor.buffer() + 8);
    EXPECT_THAT(bytes, Each(0));
}

// A shape whose byte count is negative or more than can be allocated.
struct ImpossibleShape {
    const char* name;
    TensorShape shape;
};

class ImpossibleShapeTest : public ::testing::TestWithParam<ImpossibleShape> {};

TEST_P(ImpossibleShapeTest, ConstructionFailsInsteadOfAllocatingLess) {
    const TensorShape& shape = GetParam().shape;
    EXPECT_THROW(Tensor(DataType::FLOAT, shape), std::bad_alloc);
    EXPECT_THROW(std::make_shared<Tensor>(DataType::FLOAT, shape), std::bad_alloc);
}

TEST_P(ImpossibleShapeTest, ResizeFailsAndLeavesTheTensorWithoutMemory) {
    Tensor tensor(DataType::FLOAT);
    EXPECT_THROW(tensor.resize(GetParam().shape), std::bad_alloc);
    EXPECT_EQ(tensor.buffer(), nullptr);
    EXPECT_THAT(tensor.shape().shapeVector(), IsEmpty());
    EXPECT_THAT(tensor.resize(TensorShape(2)), IsOk());
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, ImpossibleShapeTest,
    ::testing::Values(ImpossibleShape{"Variable", TensorShape(-1)},
                      ImpossibleShape{"Negative", {2, -3}},
                      ImpossibleShape{"WrapsToFewBytes", TensorShape((int64{1} << 62) + 1)},
                      ImpossibleShape{"WrapsToNoBytes", TensorShape(int64{1} << 62)},
                      ImpossibleShape{"WrapsToTheLeastNumber", TensorShape(int64{1} << 61)},
                      ImpossibleShape{"ElementsWrapToNone", {int64{1} << 32, int64{1} << 32}},
                      ImpossibleShape{"NegativesWrapToNone",
                                      {-(int64{1} << 32), -(int64{1} << 32)}},
                      ImpossibleShape{"Greatest", TensorShape(std::numeric_limits<int64>::max())},
                      ImpossibleShape{"Least", TensorShape(std::numeric_limits<int64>::min())}),
    testing::CaseName());

TEST(TensorTest, AllocatingMoreThanIsAddressableThrowsAndKeepsTheMemory) {
    Tensor tensor(DataType::UINT8, TensorShape(4));
    const unsigned char* const memory = tensor.buffer();
    EXPECT_THROW(tensor.allocate(std::numeric_limits<std::size_t>::max()), std::bad_alloc);
    EXPECT_EQ(tensor.buffer(), memory);
}

TEST(TensorTest, ADimensionOfZeroMakesAHugeShapeAnEmptyTensor) {
    const int64 huge = std::numeric_limits<int64>::max();
    const Tensor tensor(DataType::FLOAT, TensorShape(huge, huge, 0));
    EXPECT_EQ(tensor.bytes(), 0);
    EXPECT_NE(tensor.buffer(), nullptr);
}

}  // namespace
}  // namespace VelmoraQuavin
