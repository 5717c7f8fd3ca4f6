// The block of image features.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "feature/descriptor_access.h"
#include "unit/package/manifest/manifest_fixture.h"

namespace VelmoraQuavin {
namespace {

constexpr auto kPixelTypeNotSet = static_cast<QuavinPixelType>(5);

class ManifestImage : public testing::ManifestFixture {
protected:
    // The image descriptor of an image feature with this block.
    ImageDescriptor loadImage(const std::string& block) {
        const ModelFeatureDescriptor feature =
            loadInput(R"({"featureType": "image", "image": )" + block + "}");
        EXPECT_EQ(feature.type(), QuavinFeatureType::IMAGE);
        return internal::DescriptorAccess::image(feature);
    }
    QuavinPixelType loadPixelType(const std::string& value) {
        return loadImage(R"({"pixelType": )" + value + "}").pixelType;
    }
};

TEST_F(ManifestImage, HeightWidthAndPixelTypeAreRead) {
    const ImageDescriptor image = loadImage(R"({"height": 480, "width": 640, "pixelType": "RGB"})");
    EXPECT_EQ(image.height, 480);
    EXPECT_EQ(image.width, 640);
    EXPECT_EQ(image.pixelType, QuavinPixelType::RGB);
}

TEST_F(ManifestImage, EachPixelTypeIsRead) {
    const std::vector<std::pair<std::string, int>> types = {
        {"one", 0}, {"BGR", 1}, {"RGB", 2}, {"BGRA", 4}};
    for (const auto& [name, number] : types) {
        EXPECT_EQ(static_cast<int>(loadPixelType('"' + name + '"')), number) << name;
    }
}

TEST_F(ManifestImage, RgbaIsReadAsBgra) {
    EXPECT_EQ(loadPixelType(R"("RGBA")"), QuavinPixelType::BGRA);
}

TEST_F(ManifestImage, AnUnknownNameGivesNoPixelType) {
    for (const char* value : {R"("")", R"("rgb")", R"("One")", R"("ARGB")", R"("RGB ")"}) {
        EXPECT_EQ(loadPixelType(value), kPixelTypeNotSet) << value;
    }
}

TEST_F(ManifestImage, AnythingButAStringGivesNoPixelType) {
    for (const char* value : {"1", "null", "true", R"(["RGB"])", "{}"}) {
        EXPECT_EQ(loadPixelType(value), kPixelTypeNotSet) << value;
    }
}

TEST_F(ManifestImage, AHeightOrWidthThatIsNotAWholeNumberIsZero) {
    for (const std::string value :
         {"null", "true", "2.5", R"("480")", "[480]", "{}", "2147483648", "-2147483649"}) {
        const ImageDescriptor image =
            loadImage(R"({"height": )" + value + R"(, "width": )" + value + "}");
        EXPECT_EQ(image.height, 0) << value;
        EXPECT_EQ(image.width, 0) << value;
    }
}

TEST_F(ManifestImage, AnyHeightAndWidthAreAccepted) {
    const ImageDescriptor image = loadImage(R"({"height": -1, "width": 2147483647})");
    EXPECT_EQ(image.height, -1);
    EXPECT_EQ(image.width, 2147483647);
}

TEST_F(ManifestImage, WithoutABlockAnImageHasDefaults) {
    for (const char* block : {"{}", "null", "[480, 640]", R"("RGB")", "3"}) {
        const ImageDescriptor image = loadImage(block);
        EXPECT_EQ(image.height, 0) << block;
        EXPECT_EQ(image.width, 0) << block;
        EXPECT_EQ(image.pixelType, kPixelTypeNotSet) << block;
    }
}

TEST_F(ManifestImage, AnImageHasNoElementTypeAndNoShape) {
    const ModelFeatureDescriptor feature =
        loadInput(R"({"featureType": "image", "image": {"shape": [4], "dataType": "float"},
                      "tensor": {"shape": [4], "dataType": "float"}})");
    EXPECT_EQ(feature.tensorDescriptor().tensorType(), DataType::UNDEFINED);
    EXPECT_EQ(feature.tensorDescriptor().shape().dimension(), 0u);
}

TEST_F(ManifestImage, OnlyImageFeaturesReadTheBlock) {
    const ModelFeatureDescriptor feature = loadInput(
        R"({"featureType": "tensor", "image": {"height": 4, "width": 5, "pixelType": "one"}})");
    const ImageDescriptor image = internal::DescriptorAccess::image(feature);
    EXPECT_EQ(image.height, 0);
    EXPECT_EQ(image.width, 0);
    EXPECT_EQ(image.pixelType, kPixelTypeNotSet);
}

}  // namespace
}  // namespace VelmoraQuavin
