#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quavin/tensor.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;

TEST(TensorShapeLayoutTest, ChwIsTheLastThreeDimensions) {
    EXPECT_THAT(TensorShape(3, 224, 200).getCHW(), ElementsAre(3, 224, 200));
    EXPECT_THAT(TensorShape(7, 3, 224, 200).getCHW(), ElementsAre(3, 224, 200));
    EXPECT_THAT(TensorShape(9, 8, 7, 6, 5).getCHW(), ElementsAre(7, 6, 5));
}

TEST(TensorShapeLayoutTest, MissingLeadingDimensionsOfChwAreOne) {
    EXPECT_THAT(TensorShape().getCHW(), ElementsAre(1, 1, 1));
    EXPECT_THAT(TensorShape(5).getCHW(), ElementsAre(1, 1, 5));
    EXPECT_THAT(TensorShape(2, 3).getCHW(), ElementsAre(1, 2, 3));
}

TEST(TensorShapeLayoutTest, NchwIsTheLastFourDimensions) {
    EXPECT_THAT(TensorShape(7, 3, 224, 200).getNCHW(), ElementsAre(7, 3, 224, 200));
    EXPECT_THAT(TensorShape(9, 8, 7, 6, 5).getNCHW(), ElementsAre(8, 7, 6, 5));
}

TEST(TensorShapeLayoutTest, MissingLeadingDimensionsOfNchwAreOne) {
    EXPECT_THAT(TensorShape().getNCHW(), ElementsAre(1, 1, 1, 1));
    EXPECT_THAT(TensorShape(3, 224, 200).getNCHW(), ElementsAre(1, 3, 224, 200));
}

TEST(TensorShapeLayoutTest, NhwcMovesTheChannelsToTheEnd) {
    EXPECT_THAT(TensorShape(1, 3, 224, 224).getNHWC(), ElementsAre(1, 224, 224, 3));
    EXPECT_THAT(TensorShape(2, 3, 4, 5).getNHWC(), ElementsAre(2, 4, 5, 3));
    EXPECT_THAT(TensorShape(9, 2, 3, 4, 5).getNHWC(), ElementsAre(2, 4, 5, 3));
}

TEST(TensorShapeLayoutTest, MissingDimensionsOfNhwcAreOne) {
    EXPECT_THAT(TensorShape(224, 224).getNHWC(), ElementsAre(1, 224, 224, 1));
    EXPECT_THAT(TensorShape(3, 4, 5).getNHWC(), ElementsAre(1, 4, 5, 3));
    EXPECT_THAT(TensorShape().getNHWC(), ElementsAre(1, 1, 1, 1));
}

TEST(TensorShapeLayoutTest, VariableDimensionsAreCopiedLikeOthers) {
    EXPECT_THAT(TensorShape(-1, 3, -1, 5).getCHW(), ElementsAre(3, -1, 5));
    EXPECT_THAT(TensorShape(-1, 3, -1, 5).getNCHW(), ElementsAre(-1, 3, -1, 5));
    EXPECT_THAT(TensorShape(-1, 3, -1, 5).getNHWC(), ElementsAre(-1, -1, 5, 3));
}

TEST(TensorShapeLayoutTest, TheShapeItselfIsUnchanged) {
    const TensorShape shape(2, 3);
    shape.getNHWC();
    EXPECT_THAT(shape.shapeVector(), ElementsAre(2, 3));
}

}  // namespace
}  // namespace VelmoraQuavin
