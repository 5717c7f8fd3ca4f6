#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <limits>
#include <utility>

#include "quavin/tensor.h"
#include "support/status_matcher.h"
#include "unit/tensor/status_texts.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;
using testing::expectThrows;
using ::testing::IsEmpty;
using testing::IsOk;
using testing::IsStatus;

constexpr const char* kInsufficient = "The existing buffer is insufficient for the given shape.";
constexpr const char* kEmptyShape =
    "Tensor shape cannot be empty when constructing a new tensor with an exsiting buffer.";

class BufferWrappedTensorTest : public ::testing::Test {
protected:
    void expectRefused(const TensorShape& shape, std::size_t size, const char* text) {
        expectThrows<InvalidArgumentsException>(
            [&] { BufferWrappedTensor(DataType::FLOAT, shape, memory_.data(), size); },
            INVALID_ARGUMENTS, text);
    }

    std::array<unsigned char, 32> memory_ = {1, 2, 3, 4};
};

TEST_F(BufferWrappedTensorTest, ATypeAloneProvidesNoMemory) {
    BufferWrappedTensor tensor(DataType::FLOAT);
    EXPECT_EQ(tensor.buffer(), nullptr);
    EXPECT_EQ(std::as_const(tensor).buffer(), nullptr);
    EXPECT_THAT(tensor.shape().shapeVector(), IsEmpty());
    EXPECT_EQ(tensor.bytes(), 4);
}

TEST_F(BufferWrappedTensorTest, WrapsTheHostsMemory) {
    BufferWrappedTensor tensor(DataType::FLOAT, TensorShape(2, 2), memory_.data(), 16);
    EXPECT_EQ(tensor.buffer(), memory_.data());
    EXPECT_EQ(std::as_const(tensor).buffer(), memory_.data());
    EXPECT_EQ(tensor.bytes(), 16);
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(2, 2));
    EXPECT_THAT(tensor.stride().shapeVector(), ElementsAre(2, 1));
}

TEST_F(BufferWrappedTensorTest, LeavesTheHostsMemoryAlone) {
    { const BufferWrappedTensor tensor(DataType::FLOAT, TensorShape(2, 2), memory_.data(), 16); }
    EXPECT_EQ(memory_[0], 1);
    EXPECT_EQ(memory_[3], 4);
}

TEST_F(BufferWrappedTensorTest, AcceptsASizeBelowTheShapesBytes) {
    BufferWrappedTensor tensor(DataType::FLOAT, TensorShape(2, 2), memory_.data(), 8);
    EXPECT_EQ(tensor.buffer(), memory_.data());
    EXPECT_EQ(tensor.bytes(), 16);
    EXPECT_NO_THROW(BufferWrappedTensor(DataType::FLOAT, TensorShape(2, 2), memory_.data(), 0));
}

TEST_F(BufferWrappedTensorTest, RefusesALargerBuffer) {
    expectRefused(TensorShape(2, 2), 32, kInsufficient);
    expectRefused(TensorShape(2, 2), 17, kInsufficient);
    expectRefused(TensorShape(2, 2), std::numeric_limits<std::size_t>::max(), kInsufficient);
}

TEST_F(BufferWrappedTensorTest, RefusesABufferForAShapeOfNegativeSize) {
    expectRefused(TensorShape(2, -1), 16, kInsufficient);
    expectRefused(TensorShape(2, -1), 0, kInsufficient);
}

TEST_F(BufferWrappedTensorTest, RefusesABufferForAnUnknownType) {
    expectThrows<InvalidArgumentsException>(
        [&] { BufferWrappedTensor(DataType::UNDEFINED, TensorShape(2), memory_.data(), 1); },
        INVALID_ARGUMENTS, kInsufficient);
}

TEST_F(BufferWrappedTensorTest, RefusesAnEmptyShapeBeforeCheckingTheSize) {
    expectRefused(TensorShape(), 4, kEmptyShape);
    expectRefused(TensorShape(), 32, kEmptyShape);
}

TEST_F(BufferWrappedTensorTest, ANullBufferIsAcceptedWithAnyShapeAndSize) {
    const BufferWrappedTensor fitting(DataType::FLOAT, TensorShape(2, 2), nullptr, 16);
    EXPECT_EQ(fitting.buffer(), nullptr);
    EXPECT_THAT(fitting.shape().shapeVector(), ElementsAre(2, 2));

    const BufferWrappedTensor larger(DataType::FLOAT, TensorShape(2, 2), nullptr, 1000);
    EXPECT_EQ(larger.buffer(), nullptr);
    const BufferWrappedTensor shapeless(DataType::FLOAT, TensorShape(), nullptr, 7);
    EXPECT_EQ(shapeless.buffer(), nullptr);
    const BufferWrappedTensor variable(DataType::FLOAT, TensorShape(-1), nullptr, 7);
    EXPECT_EQ(variable.buffer(), nullptr);
}

TEST_F(BufferWrappedTensorTest, ResizeToTheSameByteCountReshapes) {
    BufferWrappedTensor tensor(DataType::FLOAT, TensorShape(2, 2), memory_.data(), 16);
    EXPECT_THAT(tensor.resize(TensorShape(4)), IsOk());
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(4));
    EXPECT_EQ(tensor.buffer(), memory_.data());
    EXPECT_EQ(memory_[1], 2);
}

TEST_F(BufferWrappedTensorTest, ResizeToADifferentByteCountIsRefused) {
    BufferWrappedTensor tensor(DataType::FLOAT, TensorShape(2, 2), memory_.data(), 16);
    EXPECT_THAT(tensor.resize(TensorShape(3)), IsStatus(TENSOR_SIZE_MISMATCH, testing::kMismatch));
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(2, 2));
}

TEST_F(BufferWrappedTensorTest, ResizeWithoutMemoryFails) {
    BufferWrappedTensor tensor(DataType::FLOAT);
    EXPECT_THAT(tensor.resize(TensorShape(2, 2)),
                IsStatus(ALLOCATION_FAILED, testing::kAllocation));
    EXPECT_THAT(tensor.shape().shapeVector(), IsEmpty());
    EXPECT_EQ(tensor.buffer(), nullptr);
}

TEST_F(BufferWrappedTensorTest, ResizeWithoutMemoryFailsForImpossibleShapesToo) {
    BufferWrappedTensor tensor(DataType::FLOAT);
    EXPECT_THAT(tensor.resize(TensorShape(-1)), IsStatus(ALLOCATION_FAILED, testing::kAllocation));
    EXPECT_THAT(tensor.resize(TensorShape(int64{1} << 62)),
                IsStatus(ALLOCATION_FAILED, testing::kAllocation));
}

TEST_F(BufferWrappedTensorTest, NeverAllocates) {
    BufferWrappedTensor tensor(DataType::FLOAT, TensorShape(2, 2), memory_.data(), 16);
    EXPECT_FALSE(tensor.allocate(16));
    EXPECT_EQ(tensor.buffer(), memory_.data());
    EXPECT_FALSE(BufferWrappedTensor(DataType::FLOAT).allocate(0));
}

}  // namespace
}  // namespace VelmoraQuavin
