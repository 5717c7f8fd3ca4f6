#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "quavin/tensor.h"
#include "support/status_matcher.h"
#include "unit/tensor/status_texts.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int64 kMin = std::numeric_limits<int64>::min();
constexpr int64 kMax = std::numeric_limits<int64>::max();

TEST(TensorShapeTest, IsEmptyByDefault) {
    const TensorShape shape;
    EXPECT_EQ(shape.dimension(), 0U);
    EXPECT_THAT(shape.shapeVector(), IsEmpty());
}

TEST(TensorShapeTest, AcceptsOneToFiveDimensionsInOrder) {
    EXPECT_THAT(TensorShape(5).shapeVector(), ElementsAre(5));  // the dimension, not a count
    EXPECT_THAT(TensorShape(2, 3).shapeVector(), ElementsAre(2, 3));
    EXPECT_THAT(TensorShape(2, 3, 4).shapeVector(), ElementsAre(2, 3, 4));
    EXPECT_THAT(TensorShape(2, 3, 4, 5).shapeVector(), ElementsAre(2, 3, 4, 5));
    EXPECT_THAT(TensorShape(2, 3, 4, 5, 6).shapeVector(), ElementsAre(2, 3, 4, 5, 6));
}

TEST(TensorShapeTest, AcceptsAListOrAVectorOfAnyLength) {
    const std::vector<int64> dimensions = {1, 2, 3, 4, 5, 6, 7};
    EXPECT_THAT(TensorShape({1, 2, 3, 4, 5, 6, 7}).shapeVector(), ElementsAre(1, 2, 3, 4, 5, 6, 7));
    EXPECT_EQ(TensorShape(dimensions).shapeVector(), dimensions);
    EXPECT_THAT(TensorShape({5}).shapeVector(), ElementsAre(5));
    EXPECT_THAT(TensorShape(std::vector<int64>()).shapeVector(), IsEmpty());
}

TEST(TensorShapeTest, StoresEveryValueAsGiven) {
    const TensorShape shape(0, -1, -7, kMin, kMax);
    EXPECT_THAT(shape.shapeVector(), ElementsAre(0, -1, -7, kMin, kMax));
}

TEST(TensorShapeTest, CopiesAreIndependent) {
    TensorShape original(2, 3);
    const TensorShape copy = original;
    original[0] = 7;
    EXPECT_THAT(copy.shapeVector(), ElementsAre(2, 3));
}

TEST(TensorShapeTest, TheShapeVectorIsACopy) {
    const TensorShape shape(2, 3);
    shape.shapeVector()[0] = 7;
    EXPECT_EQ(shape[0], 2);
}

TEST(TensorShapeTest, SizeIsTheProductOfTheDimensions) {
    EXPECT_EQ(TensorShape(5).size(), 5);
    EXPECT_EQ(TensorShape(2, 3, 4).size(), 24);
    EXPECT_EQ(TensorShape(2, 0, 4).size(), 0);
}

TEST(TensorShapeTest, AnEmptyShapeHasOneElement) {
    EXPECT_EQ(TensorShape().size(), 1);
}

TEST(TensorShapeTest, VariableDimensionsCountAsMinusOne) {
    EXPECT_EQ(TensorShape(1, -1, 3).size(), -3);
    EXPECT_EQ(TensorShape(-1, -1, 3).size(), 3);
}

TEST(TensorShapeTest, SizeWrapsSilently) {
    const int64 billions = int64{1} << 32;
    EXPECT_EQ(TensorShape(billions, billions).size(), 0);         // 2^64
    EXPECT_EQ(TensorShape(kMax, 2).size(), -2);                   // 2^64 - 2
    EXPECT_EQ(TensorShape(kMin, -1).size(), kMin);                // 2^63
    EXPECT_EQ(TensorShape(billions, billions / 2).size(), kMin);  // 2^63
}

TEST(TensorShapeTest, IsAlwaysValid) {
    EXPECT_TRUE(TensorShape().valid());
    EXPECT_TRUE(TensorShape(1, -1, 0, kMin).valid());
}

TEST(TensorShapeTest, ReadsAndChangesADimension) {
    TensorShape shape(2, 3);
    EXPECT_EQ(shape[0], 2);
    EXPECT_EQ(std::as_const(shape)[1], 3);
    shape[1] = 9;
    EXPECT_THAT(shape.shapeVector(), ElementsAre(2, 9));
}

TEST(TensorShapeTest, AnIndexPastTheEndThrows) {
    TensorShape shape(2);
    for (const uint64 index : {uint64{1}, uint64{2}, uint64{1} << 63U, ~uint64{0}}) {
        testing::expectThrows<RangeException>([&] { shape[index] = 1; }, OUT_OF_RANGE,
                                              testing::kOutOfRange);
        testing::expectThrows<RangeException>([&] { EXPECT_EQ(std::as_const(shape)[index], 0); },
                                              OUT_OF_RANGE, testing::kOutOfRange);
    }
    EXPECT_THAT(shape.shapeVector(), ElementsAre(2));
}

TEST(TensorShapeTest, AnEmptyShapeHasNoValidIndex) {
    testing::expectThrows<RangeException>([] { TensorShape()[0] = 1; }, OUT_OF_RANGE,
                                          testing::kOutOfRange);
}

}  // namespace
}  // namespace VelmoraQuavin
