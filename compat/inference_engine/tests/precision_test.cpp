#include <gtest/gtest.h>

#include <inference_engine.hpp>
#include <string>

namespace InferenceEngine {
namespace {

TEST(PrecisionTest, ConvertsFromAndToTheEnumeration) {
    const Precision precision = Precision::I16;
    const Precision::ePrecision value = precision;
    EXPECT_EQ(value, Precision::I16);
    EXPECT_EQ(precision.getPrecVal(), 30);
    EXPECT_EQ(Precision(Precision::FP32).getPrecVal(), 10);
    EXPECT_EQ(Precision(Precision::I8).getPrecVal(), 50);
    EXPECT_EQ(Precision(Precision::I32).getPrecVal(), 70);
}

TEST(PrecisionTest, ComparesByValue) {
    const Precision precision(Precision::U8);
    EXPECT_TRUE(precision == Precision::U8);
    EXPECT_TRUE(precision == Precision(Precision::U8));
    EXPECT_TRUE(precision != Precision::I8);
    EXPECT_TRUE(precision != Precision(Precision::I8));
    EXPECT_FALSE(precision == Precision::BOOL);
}

TEST(PrecisionTest, IsUnspecifiedByDefault) {
    EXPECT_EQ(Precision().getPrecVal(), 255);
}

TEST(PrecisionTest, SizeMatchesOneElement) {
    EXPECT_EQ(Precision(Precision::FP32).size(), 4U);
    EXPECT_EQ(Precision(Precision::FP16).size(), 2U);
    EXPECT_EQ(Precision(Precision::Q78).size(), 2U);
    EXPECT_EQ(Precision(Precision::I16).size(), 2U);
    EXPECT_EQ(Precision(Precision::U16).size(), 2U);
    EXPECT_EQ(Precision(Precision::U8).size(), 1U);
    EXPECT_EQ(Precision(Precision::BOOL).size(), 1U);
    EXPECT_EQ(Precision(Precision::I8).size(), 1U);
    EXPECT_EQ(Precision(Precision::BIN).size(), 1U);
    EXPECT_EQ(Precision(Precision::I32).size(), 4U);
    EXPECT_EQ(Precision(Precision::I64).size(), 8U);
}

TEST(PrecisionTest, SizeThrowsForAPrecisionWithoutASize) {
    EXPECT_THROW(Precision(Precision::UNSPECIFIED).size(), details::InferenceEngineException);
    EXPECT_THROW(Precision(Precision::MIXED).size(), details::InferenceEngineException);
    EXPECT_THROW(Precision(Precision::CUSTOM).size(), details::InferenceEngineException);
}

TEST(PrecisionTest, NameMatchesTheEnumeration) {
    EXPECT_STREQ(Precision(Precision::FP32).name(), "FP32");
    EXPECT_STREQ(Precision(Precision::BOOL).name(), "BOOL");
    EXPECT_STREQ(Precision(Precision::UNSPECIFIED).name(), "UNSPECIFIED");
}

TEST(PrecisionTest, StoresTheTypeOfItsElements) {
    EXPECT_TRUE(Precision(Precision::FP32).hasStorageType<float>());
    EXPECT_TRUE(Precision(Precision::FP16).hasStorageType<std::int16_t>());
    EXPECT_TRUE(Precision(Precision::Q78).hasStorageType<std::uint16_t>());
    EXPECT_TRUE(Precision(Precision::I16).hasStorageType<std::int16_t>());
    EXPECT_TRUE(Precision(Precision::U16).hasStorageType<std::uint16_t>());
    EXPECT_TRUE(Precision(Precision::U8).hasStorageType<std::uint8_t>());
    EXPECT_TRUE(Precision(Precision::BOOL).hasStorageType<std::uint8_t>());
    EXPECT_TRUE(Precision(Precision::I8).hasStorageType<std::int8_t>());
    EXPECT_TRUE(Precision(Precision::BIN).hasStorageType<std::int8_t>());
    EXPECT_TRUE(Precision(Precision::I32).hasStorageType<std::int32_t>());
    EXPECT_TRUE(Precision(Precision::I64).hasStorageType<std::int64_t>());
}

TEST(PrecisionTest, DoesNotStoreOtherTypes) {
    EXPECT_FALSE(Precision(Precision::FP32).hasStorageType<std::int32_t>());
    EXPECT_FALSE(Precision(Precision::I32).hasStorageType<float>());
    EXPECT_FALSE(Precision(Precision::I8).hasStorageType<std::uint8_t>());
    EXPECT_FALSE(Precision(Precision::I16).hasStorageType<std::uint16_t>());
    EXPECT_FALSE(Precision(Precision::UNSPECIFIED).hasStorageType<float>());
}

}  // namespace
}  // namespace InferenceEngine
