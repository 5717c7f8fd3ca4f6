// Expected images are counted by hand: a line is 5.5 of the bitmap's pixels thick, with round ends.

#include "strokes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sketch {
namespace {

using ::testing::Each;
using ::testing::ElementsAreArray;
using ::testing::FloatEq;

TEST(SketchStrokes, NothingDrawnIsAnEmptyImage) {
    EXPECT_THAT(imageOf({}), Each(0));
}

TEST(SketchStrokes, AVerticalLineFillsTheHeightAndStandsInTheMiddle) {
    const Image expected{0, 0, 0, 10, 10, 0, 0, 0,  //
                         0, 0, 0, 12, 12, 0, 0, 0,  //
                         0, 0, 0, 12, 12, 0, 0, 0,  //
                         0, 0, 0, 12, 12, 0, 0, 0,  //
                         0, 0, 0, 12, 12, 0, 0, 0,  //
                         0, 0, 0, 12, 12, 0, 0, 0,  //
                         0, 0, 0, 12, 12, 0, 0, 0,  //
                         0, 0, 0, 10, 10, 0, 0, 0};
    EXPECT_THAT(imageOf({{{100, 0}, {100, 50}}}), ElementsAreArray(expected));
}

TEST(SketchStrokes, AHorizontalLineIsNoWiderThanADigit) {
    Image expected{};
    const float row[] = {2, 11, 12, 12, 12, 12, 11, 2};
    std::copy(std::begin(row), std::end(row), expected.begin() + 3 * kImageSide);
    std::copy(std::begin(row), std::end(row), expected.begin() + 4 * kImageSide);
    EXPECT_THAT(imageOf({{{10, 40}, {90, 40}}}), ElementsAreArray(expected));
}

TEST(SketchStrokes, ADotStaysADotInTheMiddle) {
    Image expected{};
    expected[27] = expected[28] = expected[35] = expected[36] = 6;
    EXPECT_THAT(imageOf({{{300, 7}}}), ElementsAreArray(expected));
}

TEST(SketchStrokes, PlaceAndSizeOnThePaperMakeNoDifference) {
    const Drawing small{{{0, 0}, {32, 0}, {16, 64}}, {{8, 32}, {32, 32}}};
    Drawing large = small;
    for (Stroke& stroke : large) {
        for (Point& point : stroke) {
            point = {128 + 4 * point.x, 64 + 4 * point.y};
        }
    }
    EXPECT_EQ(imageOf(large), imageOf(small));
}

TEST(SketchStrokes, InkCountsOnceWhereLinesCross) {
    const Stroke line{{0, 0}, {0, 100}};
    EXPECT_EQ(imageOf({line, line}), imageOf({line}));
}

TEST(SketchStrokes, LiftingThePenLeavesAGap) {
    const Image broken = imageOf({{{0, 0}, {0, 20}}, {{0, 80}, {0, 100}}});
    EXPECT_EQ(broken[3 * kImageSide + 3], 0);
    EXPECT_EQ(broken[1 * kImageSide + 3], 12);
    EXPECT_EQ(broken[6 * kImageSide + 3], 12);
}

TEST(SketchStrokes, DistancesAreToTheNearestPointOfALine) {
    EXPECT_THAT(distanceToLine({3, 5}, {0, 0}, {10, 0}), FloatEq(5));
    EXPECT_THAT(distanceToLine({13, 4}, {0, 0}, {10, 0}), FloatEq(5));
    EXPECT_THAT(distanceToLine({-3, -4}, {0, 0}, {10, 0}), FloatEq(5));
    EXPECT_THAT(distanceToLine({3, 4}, {0, 0}, {0, 0}), FloatEq(5));
}

}  // namespace
}  // namespace sketch
