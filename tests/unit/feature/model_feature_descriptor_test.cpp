#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "feature/descriptor_access.h"
#include "quavin/feature.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using internal::DescriptorAccess;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto kTypeNotSet = static_cast<QuavinFeatureType>(7);
constexpr auto kPixelTypeNotSet = static_cast<QuavinPixelType>(5);

ImageDescriptor imageOf(std::int32_t height, std::int32_t width, QuavinPixelType pixelType) {
    ImageDescriptor image;
    image.height = height;
    image.width = width;
    image.pixelType = pixelType;
    return image;
}

void expectNoImage(const ModelFeatureDescriptor& descriptor) {
    const ImageDescriptor& image = DescriptorAccess::image(descriptor);
    EXPECT_EQ(image.height, 0);
    EXPECT_EQ(image.width, 0);
    EXPECT_EQ(image.pixelType, kPixelTypeNotSet);
}

void expectNoTensor(const ModelFeatureDescriptor& descriptor) {
    EXPECT_TRUE(descriptor.tensorDescriptor().name().empty());
    EXPECT_THAT(descriptor.tensorDescriptor().shape().shapeVector(), IsEmpty());
    EXPECT_EQ(descriptor.tensorDescriptor().tensorType(), DataType::UNDEFINED);
}

void expectNoTexts(const ModelFeatureDescriptor& descriptor) {
    EXPECT_TRUE(descriptor.name().empty());
    EXPECT_TRUE(descriptor.description().empty());
}

TEST(ImageDescriptorTest, IsNotSetByDefault) {
    const ImageDescriptor image;
    EXPECT_EQ(image.height, 0);
    EXPECT_EQ(image.width, 0);
    EXPECT_EQ(image.pixelType, kPixelTypeNotSet);
}

TEST(ModelFeatureDescriptorTest, IsRequiredAndUntypedByDefault) {
    const ModelFeatureDescriptor descriptor;
    EXPECT_TRUE(descriptor.required());
    EXPECT_EQ(descriptor.type(), kTypeNotSet);
    expectNoTexts(descriptor);
    expectNoTensor(descriptor);
    expectNoImage(descriptor);
}

TEST(ModelFeatureDescriptorTest, IsRequiredIfOnlyATypeIsGiven) {
    const ModelFeatureDescriptor descriptor(QuavinFeatureType::STRING);
    EXPECT_TRUE(descriptor.required());
    EXPECT_EQ(descriptor.type(), QuavinFeatureType::STRING);
    expectNoTexts(descriptor);
    expectNoTensor(descriptor);
    expectNoImage(descriptor);
}

TEST(ModelFeatureDescriptorTest, AnImageFeatureIsNotRequiredByDefault) {
    const ModelFeatureDescriptor descriptor(QuavinFeatureType::IMAGE,
                                            imageOf(480, 640, QuavinPixelType::BGR));
    EXPECT_FALSE(descriptor.required());
    EXPECT_EQ(descriptor.type(), QuavinFeatureType::IMAGE);
    EXPECT_EQ(DescriptorAccess::image(descriptor).height, 480);
    EXPECT_EQ(DescriptorAccess::image(descriptor).width, 640);
    EXPECT_EQ(DescriptorAccess::image(descriptor).pixelType, QuavinPixelType::BGR);
    expectNoTexts(descriptor);
    expectNoTensor(descriptor);
}

TEST(ModelFeatureDescriptorTest, ATensorFeatureIsNotRequiredByDefault) {
    const ModelFeatureDescriptor descriptor(
        QuavinFeatureType::TENSOR,
        TensorDescriptor("data", TensorShape(2, 3), false, DataType::INT16));
    EXPECT_FALSE(descriptor.required());
    EXPECT_EQ(descriptor.type(), QuavinFeatureType::TENSOR);
    EXPECT_EQ(descriptor.tensorDescriptor().name(), "data");
    EXPECT_THAT(descriptor.tensorDescriptor().shape().shapeVector(), ElementsAre(2, 3));
    EXPECT_EQ(descriptor.tensorDescriptor().tensorType(), DataType::INT16);
    expectNoTexts(descriptor);
    expectNoImage(descriptor);
}

class FullDescriptorTest : public ::testing::Test {
protected:
    static ModelFeatureDescriptor make(bool required) {
        return {QuavinFeatureType::TENSOR,
                required,
                "input",
                "an input",
                TensorDescriptor(TensorShape(2, 3), DataType::FLOAT),
                imageOf(1, 2, QuavinPixelType::RGBA)};
    }
    static void expectComplete(const ModelFeatureDescriptor& descriptor) {
        EXPECT_EQ(descriptor.type(), QuavinFeatureType::TENSOR);
        EXPECT_EQ(descriptor.name(), "input");
        EXPECT_EQ(descriptor.description(), "an input");
        EXPECT_THAT(descriptor.tensorDescriptor().shape().shapeVector(), ElementsAre(2, 3));
        EXPECT_EQ(DescriptorAccess::image(descriptor).width, 2);
        EXPECT_EQ(DescriptorAccess::image(descriptor).pixelType, QuavinPixelType::RGBA);
    }
};

TEST_F(FullDescriptorTest, StoresItsArguments) {
    expectComplete(make(true));
    EXPECT_TRUE(make(true).required());
    EXPECT_FALSE(make(false).required());
}

TEST_F(FullDescriptorTest, CopiesAndMovesAreComplete) {
    ModelFeatureDescriptor original = make(true);
    const ModelFeatureDescriptor copy = original;
    expectComplete(copy);
    expectComplete(original);
    const ModelFeatureDescriptor moved = std::move(original);
    expectComplete(moved);
}

TEST_F(FullDescriptorTest, TextsAreReturnedAsCopies) {
    const ModelFeatureDescriptor descriptor = make(true);
    descriptor.name() += " changed";
    descriptor.description() += " changed";
    expectComplete(descriptor);
}

TEST_F(FullDescriptorTest, TheTensorDescriptorIsNotCopied) {
    const ModelFeatureDescriptor descriptor = make(true);
    EXPECT_EQ(&descriptor.tensorDescriptor(), &descriptor.tensorDescriptor());
}

TEST(ModelFeatureDescriptorTest, ReadingAVariableShapeThrows) {
    const ModelFeatureDescriptor descriptor(QuavinFeatureType::TENSOR,
                                            TensorDescriptor(TensorShape(1, -1), DataType::FLOAT));
    testing::expectThrows<InvalidOperationException>(
        [&] { descriptor.tensorDescriptor().shape(); }, INVALID_OPERATION,
        "Attempting to infer a tensor shape from a variable-shaped tensor.");
}

}  // namespace
}  // namespace VelmoraQuavin
