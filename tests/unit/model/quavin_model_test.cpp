#include "quavin/model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "support/recording_model.h"
#include "support/status_matcher.h"
#include "target_fixture.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::IsOk;
using testing::IsStatus;
using testing::RecordingModel;

/// A model that leaves preparation to its base class.
class UnpreparedModel : public QuavinModel {
public:
    UnpreparedModel() : QuavinModel("unprepared", QuavinModelType::Openvino) {}
    QuavinStatus prepareImpl() override { return QuavinModel::prepareImpl(); }

protected:
    QuavinStatus predictImpl(const std::vector<std::shared_ptr<QuavinFeature>>& /*inputs*/,
                             std::vector<std::shared_ptr<QuavinFeature>>& /*outputs*/,
                             int /*option*/) const override {
        return {};
    }
    QuavinStatus loadImpl(const std::vector<ModelComponent>& /*components*/) override { return {}; }
    QuavinStatus unloadImpl() override { return {}; }
};

TEST(QuavinModelTest, KeepsNameAndType) {
    const RecordingModel model("a name", QuavinModelType::WinML);
    EXPECT_EQ(model.getName(), "a name");
    EXPECT_EQ(model.getModelType(), QuavinModelType::WinML);
}

TEST(QuavinModelTest, TakesItsTypeFromADevice) {
    Device device;
    device.engineType = QuavinModelType::MockML;
    const RecordingModel model("a name", &device);
    device.engineType = QuavinModelType::CoreML;
    EXPECT_EQ(model.getName(), "a name");
    EXPECT_EQ(model.getModelType(), QuavinModelType::MockML);
}

TEST(QuavinModelTest, ANullDeviceGivesAnUndefinedType) {
    const RecordingModel model("a name", static_cast<Device*>(nullptr));
    EXPECT_EQ(model.getModelType(), QuavinModelType::Undefined);
}

TEST(QuavinModelTest, StartsNotLoadedWithoutMetadataOrAccount) {
    const RecordingModel model;
    EXPECT_EQ(model.getMetadata(), nullptr);
    EXPECT_EQ(model.getRuntimeStatus(), nullptr);
    EXPECT_FALSE(model.isLoaded());
}

TEST(QuavinModelTest, SupportsSharedFromThis) {
    const std::shared_ptr<QuavinModel> model = std::make_shared<RecordingModel>();
    EXPECT_EQ(model->shared_from_this(), model);
}

TEST(QuavinModelTest, PreparingSucceedsUnlessAnEngineOverridesIt) {
    EXPECT_THAT(UnpreparedModel().prepareImpl(), IsOk());
}

TEST(QuavinModelTest, TargetMetadataIsACopyOfTheTargetOfItsType) {
    RecordingModel model("a name", QuavinModelType::MockML);
    const auto metadata = metadataOf(completeTarget(), QuavinModelType::MockML);
    metadata->getTargets().emplace(QuavinModelType::Openvino, ModelTarget());
    model.load(metadata);

    ModelTarget target = model.getTargetMetadata();
    EXPECT_THAT(target.inputNames, ElementsAre(String("in")));
    EXPECT_EQ(target.components.size(), 2U);
    target.components.clear();
    EXPECT_EQ(model.getTargetMetadata().components.size(), 2U);
}

TEST(QuavinModelTest, TargetMetadataIsEmptyWithoutATargetOfItsType) {
    RecordingModel model;
    const auto metadata = metadataOf(completeTarget(), QuavinModelType::MockML);
    model.load(metadata);

    const ModelTarget target = model.getTargetMetadata();
    EXPECT_THAT(target.components, IsEmpty());
    EXPECT_THAT(target.inputs, IsEmpty());
    EXPECT_THAT(target.outputs, IsEmpty());
    EXPECT_THAT(target.inputNames, IsEmpty());
    EXPECT_THAT(target.outputNames, IsEmpty());
    EXPECT_EQ(metadata->getTargets().size(), 1U);
}

TEST(QuavinModelTest, TargetMetadataIsEmptyWithoutMetadata) {
    RecordingModel model;
    EXPECT_THAT(model.getTargetMetadata().components, IsEmpty());
    model.load(metadataOf(completeTarget()));
    model.releaseMetadata();
    EXPECT_THAT(model.getTargetMetadata().components, IsEmpty());
}

// The engine's own models are covered by the engine's tests.
TEST(QuavinModelTest, EngineInfoNeedsALoadedModelThatProvidesIt) {
    RecordingModel model;
    EngineInfo info;
    info.device = "as it was";
    EXPECT_THAT(model.getEngineInfo(info), IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    ASSERT_THAT(model.load(metadataOf(completeTarget())), IsOk());
    EXPECT_THAT(model.getEngineInfo(info),
                IsStatus(FAILURE, "The model does not report what it runs on"));
    EXPECT_EQ(info.device, "as it was");
}

class PredictTest : public ::testing::Test {
protected:
    RecordingModel model_;
    RecordingModel::Features inputs_;
    RecordingModel::Features outputs_;
};

TEST_F(PredictTest, ForwardsOnceWithTheSameArguments) {
    model_.predictAnswer = {OUT_OF_RANGE, "the engine's answer"};
    EXPECT_THAT(model_.predict(inputs_, outputs_, 42),
                IsStatus(OUT_OF_RANGE, "the engine's answer"));
    EXPECT_THAT(model_.calls, ElementsAre("predict"));
    EXPECT_EQ(model_.inputs, &inputs_);
    EXPECT_EQ(model_.outputs, &outputs_);
    EXPECT_EQ(model_.option, 42);
}

TEST_F(PredictTest, TheOptionDefaultsToZero) {
    EXPECT_THAT(model_.predict(inputs_, outputs_), IsOk());
    EXPECT_EQ(model_.option, 0);
}

TEST_F(PredictTest, AddsNoChecks) {
    inputs_ = {nullptr};
    EXPECT_FALSE(model_.isLoaded());
    EXPECT_THAT(model_.predict(inputs_, outputs_), IsOk());
    EXPECT_THAT(model_.calls, ElementsAre("predict"));
}

TEST_F(PredictTest, LetsTheEnginesExceptionsThrough) {
    model_.duringPredict = [] { throw MLFrameworkException("engine trouble"); };
    testing::expectThrows<MLFrameworkException>([&] { model_.predict(inputs_, outputs_); },
                                                ML_FRAMEWORK_ERROR, "engine trouble");
}

TEST_F(PredictTest, CanBeCalledOnAConstModel) {
    EXPECT_THAT(std::as_const(model_).predict(inputs_, outputs_), IsOk());
}

}  // namespace
}  // namespace VelmoraQuavin
