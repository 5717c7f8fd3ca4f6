// Which engine types and devices getModel accepts.

#include "integration/get_model_test.h"

namespace VelmoraQuavin::testing {
namespace {

class GetModelOfType : public GetModel, public ::testing::WithParamInterface<std::uint64_t> {
protected:
    QuavinModelType type() const { return static_cast<QuavinModelType>(GetParam()); }
};
class GetModelOfFittingType : public GetModelOfType {};
class GetModelOfOtherType : public GetModelOfType {};

INSTANTIATE_TEST_SUITE_P(NoPreferenceAndOpenvino, GetModelOfFittingType, ::testing::Values(0, 4));
// 5, 6 and the last share a bit with Openvino, which is not enough.
INSTANTIATE_TEST_SUITE_P(OtherEnginesAndMixtures, GetModelOfOtherType,
                         ::testing::Values(1, 2, 5, 6, 8, 16, 32, (std::uint64_t{1} << 32U) + 4));

TEST_P(GetModelOfFittingType, LoadsThroughEveryOverload) {
    const auto metadata = readManifest();
    const auto expectLoaded = [&](const QuavinStatus& status) {
        EXPECT_THAT(status, IsOk());
        ASSERT_NE(model_, nullptr);
        EXPECT_EQ(model_->getModelType(), QuavinModelType::Openvino);
        model_.reset();
    };
    expectLoaded(client_.getModel(directory_.text(), model_, 0, type()));
    expectLoaded(client_.getModel(directory_.text(), model_, deviceOfType(type()), 0));
    expectLoaded(client_.getModel(utf16(directory_), model_, 0, type()));
    expectLoaded(client_.getModel(utf16(directory_), model_, deviceOfType(type()), 0));
    expectLoaded(client_.getModel(metadata, model_, type()));
    expectLoaded(client_.getModel(metadata, model_, deviceOfType(type())));
}

TEST_P(GetModelOfOtherType, IsRefusedByPathAndClearsThePointer) {
    EXPECT_THAT(client_.getModel(directory_.text(), model_, 0, type()),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_EQ(model_, nullptr);
    model_ = other_;
    EXPECT_THAT(client_.getModel(utf16(directory_), model_, 0, type()),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_EQ(model_, nullptr);
}

TEST_P(GetModelOfOtherType, IsRefusedByDeviceAndRegistersNothing) {
    EXPECT_THAT(client_.getModel(directory_.text(), model_, deviceOfType(type()), 0),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_EQ(model_, nullptr);
    EXPECT_THAT(client_.getModel(utf16(directory_), model_, deviceOfType(type()), 0),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_EQ(registeredModels(), 0U);
}

TEST_P(GetModelOfOtherType, IsRefusedByMetadataAndKeepsTheOldModel) {
    const auto metadata = readManifest();
    EXPECT_THAT(client_.getModel(metadata, model_, type()),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_EQ(model_, other_);
    EXPECT_THAT(client_.getModel(metadata, model_, deviceOfType(type())),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_EQ(model_, other_);
    EXPECT_EQ(registeredModels(), 0U);
}

TEST_F(GetModel, MetadataWithoutATargetAnswers12AndKeepsTheOldModel) {
    const auto metadata = std::make_shared<ModelMetadata>();
    EXPECT_THAT(client_.getModel(metadata, model_, Device()),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_THAT(client_.getModel(metadata, model_, QuavinModelType::Openvino),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_EQ(model_, other_);
}

TEST_F(GetModel, TheListedDeviceOfTheEngineIsRefused) {
    const std::vector<Device> devices = OpenVinoDeviceManager().getDevices();
    ASSERT_EQ(devices.size(), 1U);
    EXPECT_THAT(client_.getModel(directory_.text(), model_, devices[0], 0),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
}

TEST_F(GetModel, AManifestForOtherEnginesAnswers12AndClearsThePointer) {
    writePackageForAnotherEngine();
    EXPECT_THAT(load(), IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_EQ(model_, nullptr);
}

TEST_F(GetModel, OnlyTheEngineTypeOfADeviceMatters) {
    Device device;
    device.name = "GPU";
    device.description = "a device that no machine has";
    device.number1 = device.number2 = 77;
    device.number3 = 7;
    device.flag1 = device.flag2 = true;
    ASSERT_THAT(client_.getModel(directory_.text(), model_, device, 0), IsOk());
    inputs_ = {featureOf<float>("x", {1, 2}, DataType::FLOAT, {1, 2})};
    EXPECT_THAT(predict(), IsOk());
}

TEST_F(GetModel, TheIntegerArgumentHasNoEffect) {
    for (const int option : {-1, 1, 4711}) {
        EXPECT_THAT(client_.getModel(directory_.text(), model_, option, QuavinModelType::Openvino),
                    IsOk());
        EXPECT_THAT(client_.getModel(directory_.text(), model_, Device(), option), IsOk());
    }
}

TEST_F(GetModel, TheModelHasTheManifestsName) {
    PackageText text = describe(sumNetwork());
    text.name =
        "Summe \xC3\xBC"
        "ber zwei";
    writeManifest(directory_, text);
    ASSERT_THAT(load(), IsOk());
    EXPECT_EQ(model_->getName(),
              "Summe \xC3\xBC"
              "ber zwei");
    EXPECT_EQ(model_->getMetadata()->getRootDir().c_str(), String(directory_.text()));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
