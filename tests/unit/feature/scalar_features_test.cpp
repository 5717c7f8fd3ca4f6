#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "quavin/feature.h"

namespace VelmoraQuavin {
namespace {

ModelFeatureDescriptor descriptorOf(QuavinFeatureType type) {
    return {type, true, "input", "an input", TensorDescriptor(), ImageDescriptor()};
}

TEST(QuavinFeatureTest, KeepsItsDescriptor) {
    const QuavinFeature feature(descriptorOf(QuavinFeatureType::DOUBLE));
    EXPECT_EQ(feature.type(), QuavinFeatureType::DOUBLE);
    EXPECT_EQ(feature.featureDescriptor().name(), "input");
    EXPECT_EQ(feature.featureDescriptor().description(), "an input");
    EXPECT_TRUE(feature.featureDescriptor().required());
}

TEST(QuavinFeatureTest, KeepsItsOwnCopyOfTheDescriptor) {
    ModelFeatureDescriptor descriptor = descriptorOf(QuavinFeatureType::BOOL);
    const QuavinFeatureBool feature(descriptor);
    descriptor = ModelFeatureDescriptor();
    EXPECT_EQ(feature.type(), QuavinFeatureType::BOOL);
    EXPECT_EQ(feature.featureDescriptor().name(), "input");
}

TEST(QuavinFeatureTest, TheDescriptorsTypeIsNotCheckedAgainstTheClass) {
    QuavinFeatureInt64 feature(descriptorOf(QuavinFeatureType::TENSOR), 7);
    EXPECT_EQ(feature.type(), QuavinFeatureType::TENSOR);
    EXPECT_EQ(feature.asInt64(), 7);
}

TEST(QuavinFeatureTest, SupportsSharedFromThis) {
    const std::shared_ptr<QuavinFeature> feature =
        std::make_shared<QuavinFeatureBool>(descriptorOf(QuavinFeatureType::BOOL));
    EXPECT_EQ(feature->shared_from_this(), feature);
}

TEST(QuavinFeatureBoolTest, IsFalseByDefaultAndCanBeSet) {
    QuavinFeatureBool feature(descriptorOf(QuavinFeatureType::BOOL));
    EXPECT_FALSE(feature.asBool());
    feature.asBool() = true;
    EXPECT_TRUE(std::as_const(feature).asBool());
}

TEST(QuavinFeatureBoolTest, StoresTheGivenValue) {
    EXPECT_TRUE(QuavinFeatureBool(descriptorOf(QuavinFeatureType::BOOL), true).asBool());
}

TEST(QuavinFeatureUInt8Test, IsZeroByDefaultAndCanBeSet) {
    QuavinFeatureUInt8 feature(descriptorOf(QuavinFeatureType::UINT8));
    EXPECT_EQ(feature.asUInt8(), 0);
    feature.asUInt8() = 255;
    EXPECT_EQ(std::as_const(feature).asUInt8(), 255);
}

TEST(QuavinFeatureUInt8Test, StoresTheGivenValue) {
    EXPECT_EQ(QuavinFeatureUInt8(descriptorOf(QuavinFeatureType::UINT8), 200).asUInt8(), 200);
}

TEST(QuavinFeatureInt64Test, IsZeroByDefaultAndCanBeSet) {
    QuavinFeatureInt64 feature(descriptorOf(QuavinFeatureType::INT64));
    EXPECT_EQ(feature.asInt64(), 0);
    feature.asInt64() = std::numeric_limits<int64>::min();
    EXPECT_EQ(std::as_const(feature).asInt64(), std::numeric_limits<int64>::min());
}

TEST(QuavinFeatureInt64Test, StoresTheGivenValue) {
    const int64 value = std::numeric_limits<int64>::max();
    EXPECT_EQ(QuavinFeatureInt64(descriptorOf(QuavinFeatureType::INT64), value).asInt64(), value);
}

TEST(QuavinFeatureDoubleTest, IsZeroByDefaultAndCanBeSet) {
    QuavinFeatureDouble feature(descriptorOf(QuavinFeatureType::DOUBLE));
    EXPECT_EQ(feature.asDouble(), 0.0);
    feature.asDouble() = -0.5;
    EXPECT_EQ(std::as_const(feature).asDouble(), -0.5);
}

TEST(QuavinFeatureDoubleTest, StoresTheGivenValue) {
    EXPECT_EQ(QuavinFeatureDouble(descriptorOf(QuavinFeatureType::DOUBLE), 2.5).asDouble(), 2.5);
}

TEST(QuavinFeatureStringTest, IsEmptyByDefaultAndCanBeSet) {
    QuavinFeatureString feature(descriptorOf(QuavinFeatureType::STRING));
    EXPECT_TRUE(feature.asString().empty());
    feature.asString() = "a text";
    EXPECT_EQ(std::as_const(feature).asString(), "a text");
}

TEST(QuavinFeatureStringTest, StoresTheGivenValueWithItsZeroBytes) {
    const String value("a\0b", 3);
    EXPECT_EQ(QuavinFeatureString(descriptorOf(QuavinFeatureType::STRING), value).asString(),
              value);
}

TEST(ScalarFeatureTest, BothAccessorsReturnTheSameObject) {
    QuavinFeatureInt64 number(descriptorOf(QuavinFeatureType::INT64));
    EXPECT_EQ(&number.asInt64(), &std::as_const(number).asInt64());
    QuavinFeatureString text(descriptorOf(QuavinFeatureType::STRING));
    EXPECT_EQ(&text.asString(), &std::as_const(text).asString());
}

TEST(ScalarFeatureTest, WorksThroughItsBase) {
    const std::shared_ptr<QuavinFeature> feature =
        std::make_shared<QuavinFeatureUInt8>(descriptorOf(QuavinFeatureType::UINT8));
    feature->asUInt8() = 9;
    EXPECT_EQ(std::as_const(*feature).asUInt8(), 9);
}

}  // namespace
}  // namespace VelmoraQuavin
