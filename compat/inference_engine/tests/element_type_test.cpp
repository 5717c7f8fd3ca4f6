#include "element_type.hpp"

#include <gtest/gtest.h>

namespace InferenceEngine::runtime {
namespace {

TEST(ElementTypeTest, TypesWithoutAPrecisionAreUnspecified) {
    for (const ov_element_type_e type : {::DYNAMIC, ::U1, ::U4, ::I4, ::NF4, ::STRING, ::F8E4M3}) {
        EXPECT_EQ(shownPrecision(type, Direction::Input), Precision::UNSPECIFIED);
        EXPECT_EQ(shownPrecision(type, Direction::Output), Precision::UNSPECIFIED);
    }
}

TEST(ElementTypeTest, EveryReportedPrecisionCanBeLoaded) {
    for (const ov_element_type_e type : {::BOOLEAN, ::BF16, ::F16, ::F32, ::F64, ::I8, ::I16, ::I32,
                                         ::I64, ::U8, ::U16, ::U32, ::U64}) {
        EXPECT_NE(elementTypeOf(shownPrecision(type, Direction::Input)), ::DYNAMIC);
        EXPECT_NE(elementTypeOf(shownPrecision(type, Direction::Output)), ::DYNAMIC);
    }
}

TEST(ElementTypeTest, PrecisionsThatCannotBeLoadedHaveNoType) {
    for (const auto precision :
         {Precision::UNSPECIFIED, Precision::MIXED, Precision::FP16, Precision::Q78,
          Precision::BOOL, Precision::BIN, Precision::I64, Precision::CUSTOM}) {
        EXPECT_EQ(elementTypeOf(precision), ::DYNAMIC);
    }
}

TEST(ElementTypeTest, WidePrecisionsHoldTheValuesOfNarrowOnes) {
    EXPECT_TRUE(holdsAllOf(Precision::FP32, Precision::I16));
    EXPECT_TRUE(holdsAllOf(Precision::FP32, Precision::U16));
    EXPECT_TRUE(holdsAllOf(Precision::I32, Precision::U16));
    EXPECT_TRUE(holdsAllOf(Precision::I16, Precision::I8));
    EXPECT_TRUE(holdsAllOf(Precision::I16, Precision::U8));
    EXPECT_TRUE(holdsAllOf(Precision::U16, Precision::U8));
    EXPECT_TRUE(holdsAllOf(Precision::I8, Precision::I8));
}

TEST(ElementTypeTest, OtherPrecisionsLoseValues) {
    EXPECT_FALSE(holdsAllOf(Precision::FP32, Precision::I32));
    EXPECT_FALSE(holdsAllOf(Precision::I32, Precision::FP32));
    EXPECT_FALSE(holdsAllOf(Precision::I16, Precision::U16));
    EXPECT_FALSE(holdsAllOf(Precision::U16, Precision::I8));
    EXPECT_FALSE(holdsAllOf(Precision::I8, Precision::U8));
    EXPECT_FALSE(holdsAllOf(Precision::U8, Precision::I8));
    EXPECT_FALSE(holdsAllOf(Precision::I8, Precision::FP32));
}

}  // namespace
}  // namespace InferenceEngine::runtime
