// What all tensors share, tested on one whose memory the test controls.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "quavin/tensor.h"
#include "support/status_matcher.h"
#include "unit/tensor/status_texts.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::IsOk;
using testing::IsStatus;

/// A tensor that records the sizes resize() requests.
class ScriptedTensor : public ITensor {
public:
    ScriptedTensor(DataType dataType, TensorShape shape) : ITensor(dataType, std::move(shape)) {}
    explicit ScriptedTensor(DataType dataType) : ITensor(dataType) {}

    const unsigned char* buffer() const override { return buffer_; }
    unsigned char* buffer() override { return buffer_; }
    bool allocate(std::size_t byteCount) override {
        requested.push_back(byteCount);
        return allocates;
    }
    void giveMemory() { buffer_ = &byte_; }

    bool allocates = true;
    std::vector<std::size_t> requested;

private:
    unsigned char byte_ = 0;
    unsigned char* buffer_ = nullptr;
};

/// A tensor that reports a different shape from the stored one.
class ReshapedTensor : public ScriptedTensor {
public:
    using ScriptedTensor::ScriptedTensor;
    TensorShape shape() const override { return {4, 5, 6}; }
};

TEST(ITensorTest, KeepsTypeAndShape) {
    const ScriptedTensor tensor(DataType::INT16, TensorShape(2, 3));
    EXPECT_EQ(tensor.dataType(), DataType::INT16);
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(2, 3));
}

TEST(ITensorTest, ATypeAloneHasAnEmptyShape) {
    const ScriptedTensor tensor(DataType::DOUBLE);
    EXPECT_THAT(tensor.shape().shapeVector(), IsEmpty());
    EXPECT_EQ(tensor.bytes(), 8);
}

TEST(ITensorTest, BytesAreElementCountTimesElementSize) {
    EXPECT_EQ(ScriptedTensor(DataType::INT16, TensorShape(2, 3)).bytes(), 12);
    EXPECT_EQ(ScriptedTensor(DataType::FLOAT, TensorShape(2, 0)).bytes(), 0);
}

TEST(ITensorTest, BytesOfAnUnknownTypeAreZero) {
    EXPECT_EQ(ScriptedTensor(DataType::UNDEFINED, TensorShape(2, 3)).bytes(), 0);
    EXPECT_EQ(ScriptedTensor(static_cast<DataType>(13), TensorShape(2, 3)).bytes(), 0);
}

TEST(ITensorTest, BytesOfAVariableShapeAreNegative) {
    EXPECT_EQ(ScriptedTensor(DataType::FLOAT, TensorShape(2, -1)).bytes(), -8);
}

TEST(ITensorTest, SupportsSharedFromThis) {
    const std::shared_ptr<ITensor> tensor = std::make_shared<ScriptedTensor>(DataType::FLOAT);
    EXPECT_EQ(tensor->shared_from_this(), tensor);
}

TEST(ITensorTest, StridesAreInElementsInRowMajorOrder) {
    EXPECT_THAT(ITensor::getStrideFromShape(TensorShape(2, 3, 4)).shapeVector(),
                ElementsAre(12, 4, 1));
    EXPECT_THAT(ITensor::getStrideFromShape(TensorShape(1, 3, 224, 224)).shapeVector(),
                ElementsAre(150528, 50176, 224, 1));
    EXPECT_THAT(ITensor::getStrideFromShape(TensorShape(5)).shapeVector(), ElementsAre(1));
}

TEST(ITensorTest, StridesOfAnEmptyShapeAreEmpty) {
    EXPECT_THAT(ITensor::getStrideFromShape(TensorShape()).shapeVector(), IsEmpty());
}

TEST(ITensorTest, StridesUseEveryDimensionUnchanged) {
    EXPECT_THAT(ITensor::getStrideFromShape(TensorShape(2, -1, 4)).shapeVector(),
                ElementsAre(-4, 4, 1));
    EXPECT_THAT(ITensor::getStrideFromShape(TensorShape(2, 0, 4)).shapeVector(),
                ElementsAre(0, 4, 1));
    const int64 huge = int64{1} << 62;
    EXPECT_THAT(ITensor::getStrideFromShape(TensorShape(7, huge, 4)).shapeVector(),
                ElementsAre(0, 4, 1));  // 2^64 wraps to 0
}

TEST(ITensorTest, StrideFollowsTheReportedShape) {
    EXPECT_THAT(ScriptedTensor(DataType::FLOAT, TensorShape(2, 3, 4)).stride().shapeVector(),
                ElementsAre(12, 4, 1));
    EXPECT_THAT(ReshapedTensor(DataType::FLOAT, TensorShape(2)).stride().shapeVector(),
                ElementsAre(30, 6, 1));
}

TEST(ITensorResizeTest, WithoutMemoryItRequestsExactlyTheBytesNeeded) {
    ScriptedTensor tensor(DataType::FLOAT, TensorShape(9));
    EXPECT_THAT(tensor.resize(TensorShape(2, 3)), IsOk());
    EXPECT_THAT(tensor.requested, ElementsAre(24U));
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(2, 3));
}

TEST(ITensorResizeTest, AFailedAllocationKeepsTheShape) {
    ScriptedTensor tensor(DataType::FLOAT, TensorShape(9));
    tensor.allocates = false;
    EXPECT_THAT(tensor.resize(TensorShape(2, 3)),
                IsStatus(ALLOCATION_FAILED, testing::kAllocation));
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(9));
}

TEST(ITensorResizeTest, WithMemoryItOnlyReshapes) {
    ScriptedTensor tensor(DataType::FLOAT, TensorShape(2, 6));
    tensor.giveMemory();
    EXPECT_THAT(tensor.resize(TensorShape(3, 4)), IsOk());
    EXPECT_THAT(tensor.requested, IsEmpty());
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(3, 4));
}

TEST(ITensorResizeTest, WithMemoryItRefusesADifferentByteCount) {
    ScriptedTensor tensor(DataType::FLOAT, TensorShape(2, 6));
    tensor.giveMemory();
    EXPECT_THAT(tensor.resize(TensorShape(3, 3)),
                IsStatus(TENSOR_SIZE_MISMATCH, testing::kMismatch));
    EXPECT_THAT(tensor.resize(TensorShape(2, -6)),
                IsStatus(TENSOR_SIZE_MISMATCH, testing::kMismatch));
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(2, 6));
    EXPECT_THAT(tensor.requested, IsEmpty());
}

TEST(ITensorResizeTest, WithMemoryItRefusesAShapeWhoseByteCountWrapsToTheSame) {
    ScriptedTensor tensor(DataType::FLOAT, TensorShape(4));
    tensor.giveMemory();
    const int64 wrapping = (int64{1} << 62) + 4;  // 2^64 + 16 bytes
    EXPECT_THAT(tensor.resize(TensorShape(wrapping)),
                IsStatus(TENSOR_SIZE_MISMATCH, testing::kMismatch));
    EXPECT_THAT(tensor.shape().shapeVector(), ElementsAre(4));
}

TEST(ITensorResizeTest, WithoutMemoryItNeverRequestsTooLittleForAHugeShape) {
    ScriptedTensor tensor(DataType::FLOAT);
    tensor.resize(TensorShape((int64{1} << 62) + 4));
    tensor.resize(TensorShape(2, -3));
    EXPECT_THAT(tensor.requested, ElementsAre(std::numeric_limits<std::size_t>::max(),
                                              std::numeric_limits<std::size_t>::max()));
}

}  // namespace
}  // namespace VelmoraQuavin
