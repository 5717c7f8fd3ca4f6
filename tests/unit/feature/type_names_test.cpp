#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "quavin/feature.h"

namespace VelmoraQuavin {
namespace {

String featureTypeName(std::int32_t number) {
    return GetQuavinFeatureTypeName(static_cast<QuavinFeatureType>(number));
}
String pixelTypeName(std::int32_t number) {
    return GetQuavinPixelType(static_cast<QuavinPixelType>(number));
}

TEST(FeatureTypeTest, NumbersNeverChange) {
    EXPECT_EQ(static_cast<int>(QuavinFeatureType::BOOL), 0);
    EXPECT_EQ(static_cast<int>(QuavinFeatureType::UINT8), 1);
    EXPECT_EQ(static_cast<int>(QuavinFeatureType::INT64), 2);
    EXPECT_EQ(static_cast<int>(QuavinFeatureType::DOUBLE), 3);
    EXPECT_EQ(static_cast<int>(QuavinFeatureType::STRING), 4);
    EXPECT_EQ(static_cast<int>(QuavinFeatureType::TENSOR), 5);
    EXPECT_EQ(static_cast<int>(QuavinFeatureType::IMAGE), 6);
    EXPECT_EQ(sizeof(QuavinFeatureType), 4U);
}

TEST(FeatureTypeTest, EveryTypeHasItsName) {
    EXPECT_EQ(featureTypeName(0), "bool");
    EXPECT_EQ(featureTypeName(1), "uint8");
    EXPECT_EQ(featureTypeName(2), "int64");
    EXPECT_EQ(featureTypeName(3), "double");
    EXPECT_EQ(featureTypeName(4), "string");
    EXPECT_EQ(featureTypeName(5), "tensor");
    EXPECT_EQ(featureTypeName(6), "image");
}

TEST(FeatureTypeTest, EveryOtherNumberIsUnknown) {
    EXPECT_EQ(featureTypeName(7), "unknown");
    EXPECT_EQ(featureTypeName(8), "unknown");
    EXPECT_EQ(featureTypeName(-1), "unknown");
    EXPECT_EQ(featureTypeName(std::numeric_limits<std::int32_t>::max()), "unknown");
    EXPECT_EQ(featureTypeName(std::numeric_limits<std::int32_t>::min()), "unknown");
}

TEST(PixelTypeTest, NumbersNeverChange) {
    EXPECT_EQ(static_cast<int>(QuavinPixelType::ONE), 0);
    EXPECT_EQ(static_cast<int>(QuavinPixelType::BGR), 1);
    EXPECT_EQ(static_cast<int>(QuavinPixelType::RGB), 2);
    EXPECT_EQ(static_cast<int>(QuavinPixelType::RGBA), 3);
    EXPECT_EQ(static_cast<int>(QuavinPixelType::BGRA), 4);
    EXPECT_EQ(sizeof(QuavinPixelType), 4U);
}

TEST(PixelTypeTest, EveryTypeHasItsName) {
    EXPECT_EQ(pixelTypeName(0), "one");
    EXPECT_EQ(pixelTypeName(1), "BGR");
    EXPECT_EQ(pixelTypeName(2), "RGB");
    EXPECT_EQ(pixelTypeName(3), "RGBA");
    EXPECT_EQ(pixelTypeName(4), "BGRA");
}

TEST(PixelTypeTest, EveryOtherNumberIsUnknown) {
    EXPECT_EQ(pixelTypeName(5), "unknown");
    EXPECT_EQ(pixelTypeName(-1), "unknown");
    EXPECT_EQ(pixelTypeName(std::numeric_limits<std::int32_t>::max()), "unknown");
}

}  // namespace
}  // namespace VelmoraQuavin
