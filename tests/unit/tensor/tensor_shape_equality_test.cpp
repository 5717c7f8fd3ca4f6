// A shape's three equality checks disagree with one another, and hosts rely on each of them.
#include <gtest/gtest.h>

#include "quavin/tensor.h"
#include "support/status_matcher.h"
#include "unit/tensor/status_texts.h"

namespace VelmoraQuavin {
namespace {

bool constEqual(const TensorShape& left, const TensorShape& right) {
    return left == right;
}
// Copies, so that neither side is const.
bool nonConstEqual(TensorShape left, TensorShape right) {
    return left == right;
}
bool nonConstUnequal(TensorShape left, TensorShape right) {
    return left != right;
}

TEST(TensorShapeEqualityTest, CompareAndConstEqualityRequireTheSameDimensions) {
    const TensorShape shape(1, 2);
    EXPECT_TRUE(shape.compare(TensorShape(1, 2)));
    EXPECT_TRUE(constEqual(shape, TensorShape(1, 2)));
    EXPECT_FALSE(shape.compare(TensorShape(2, 1)));
    EXPECT_FALSE(constEqual(shape, TensorShape(2, 1)));
    EXPECT_TRUE(TensorShape().compare(TensorShape()));
    EXPECT_TRUE(constEqual(TensorShape(), TensorShape()));
}

TEST(TensorShapeEqualityTest, CompareAndConstEqualityDistinguishLengths) {
    EXPECT_FALSE(TensorShape(1, 2).compare(TensorShape(1, 2, 3)));
    EXPECT_FALSE(TensorShape(1, 2, 3).compare(TensorShape(1, 2)));
    EXPECT_FALSE(constEqual(TensorShape(1, 2), TensorShape(1, 2, 3)));
    EXPECT_FALSE(constEqual(TensorShape(1, 2, 3), TensorShape(1, 2)));
    EXPECT_FALSE(constEqual(TensorShape(), TensorShape(1)));
}

TEST(TensorShapeEqualityTest, NonConstEqualityOfTheSameDimensionsIsTrue) {
    EXPECT_TRUE(nonConstEqual(TensorShape(1, -1, 3), TensorShape(1, -1, 3)));
    EXPECT_FALSE(nonConstUnequal(TensorShape(1, -1, 3), TensorShape(1, -1, 3)));
}

TEST(TensorShapeEqualityTest, NonConstEqualityOfDifferentDimensionsIsFalse) {
    EXPECT_FALSE(nonConstEqual(TensorShape(1, 2), TensorShape(1, 3)));
    EXPECT_TRUE(nonConstUnequal(TensorShape(1, 2), TensorShape(1, 3)));
}

TEST(TensorShapeEqualityTest, NonConstEqualityOfALongerRightSideIsTrue) {
    EXPECT_TRUE(nonConstEqual(TensorShape(1, 2), TensorShape(1, 2, 3)));
    EXPECT_FALSE(nonConstUnequal(TensorShape(1, 2), TensorShape(1, 2, 3)));
}

TEST(TensorShapeEqualityTest, NonConstEqualityOfAnEmptyLeftSideIsTrueForEveryRightSide) {
    EXPECT_TRUE(nonConstEqual(TensorShape(), TensorShape()));
    EXPECT_TRUE(nonConstEqual(TensorShape(), TensorShape(7)));
    EXPECT_TRUE(nonConstEqual(TensorShape(), TensorShape(1, -1, 0)));
    EXPECT_FALSE(nonConstUnequal(TensorShape(), TensorShape(7)));
}

TEST(TensorShapeEqualityTest, NonConstEqualityOfAShorterRightSideThrows) {
    testing::expectThrows<RangeException>(
        [] { nonConstEqual(TensorShape(1, 2, 3), TensorShape(1, 2)); }, OUT_OF_RANGE,
        testing::kOutOfRange);
    testing::expectThrows<RangeException>([] { nonConstEqual(TensorShape(1), TensorShape()); },
                                          OUT_OF_RANGE, testing::kOutOfRange);
}

TEST(TensorShapeEqualityTest, NonConstInequalityOfAShorterRightSideThrows) {
    testing::expectThrows<RangeException>(
        [] { nonConstUnequal(TensorShape(1, 2, 3), TensorShape(1, 2)); }, OUT_OF_RANGE,
        testing::kOutOfRange);
}

TEST(TensorShapeEqualityTest, AnEarlierMismatchWithAShorterRightSideIsFalse) {
    EXPECT_FALSE(nonConstEqual(TensorShape(1, 2, 3), TensorShape(1, 9)));
    EXPECT_TRUE(nonConstUnequal(TensorShape(1, 2, 3), TensorShape(9)));
}

TEST(TensorShapeEqualityTest, TheConstnessOfTheLeftSideSelectsTheForm) {
    TensorShape changeable(1, 2);
    const TensorShape fixed(1, 2);
    const TensorShape longer(1, 2, 3);
    EXPECT_TRUE(changeable == longer);
    EXPECT_FALSE(fixed == longer);
}

}  // namespace
}  // namespace VelmoraQuavin
