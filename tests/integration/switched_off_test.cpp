// getModel and unloadModel with the library on and off.

#include "integration/get_model_test.h"

namespace VelmoraQuavin::testing {
namespace {

TEST_F(GetModel, WhileOffEveryOverloadAnswers15AndLeavesTheModelInPlace) {
    const auto metadata = readManifest();
    QuavinClient::terminate();
    const auto expected = IsStatus(NOT_INITIALIZED, kNotInitialized);
    const auto type = QuavinModelType::Openvino;
    EXPECT_THAT(client_.getModel(directory_.text(), model_, 0, type), expected);
    EXPECT_THAT(client_.getModel(directory_.text(), model_, Device(), 0), expected);
    EXPECT_THAT(client_.getModel(utf16(directory_), model_, 0, type), expected);
    EXPECT_THAT(client_.getModel(utf16(directory_), model_, Device(), 0), expected);
    EXPECT_THAT(client_.getModel(metadata, model_, type), expected);
    EXPECT_THAT(client_.getModel(metadata, model_, Device()), expected);
    EXPECT_EQ(model_, other_);
}

TEST_F(GetModel, BeingOffIsReportedBeforeAnEmptyPathOrNullMetadata) {
    QuavinClient::terminate();
    const auto expected = IsStatus(NOT_INITIALIZED, kNotInitialized);
    EXPECT_THAT(client_.getModel("", model_, 0, QuavinModelType::Openvino), expected);
    EXPECT_THAT(client_.getModel("", model_, Device(), 0), expected);
    EXPECT_THAT(client_.getModel(u"", model_, 0, QuavinModelType::Openvino), expected);
    EXPECT_THAT(client_.getModel(u"", model_, Device(), 0), expected);
    EXPECT_THAT(client_.getModel(nullptr, model_, Device()), expected);
    EXPECT_THAT(client_.getModel(nullptr, model_, QuavinModelType::Openvino), expected);
    EXPECT_EQ(model_, other_);
}

TEST_F(GetModel, UnloadAnswersSuccessAndKeepsThePointerAndTheRegistration) {
    ASSERT_THAT(client_.getModel(directory_.text(), model_, Device(), 0), IsOk());
    const auto held = model_;
    EXPECT_THAT(client_.unloadModel(model_), IsOk());
    EXPECT_EQ(model_, held);
    EXPECT_EQ(registeredModels(), 1U);
    EXPECT_THAT(client_.unloadModel(model_), IsOk());  // and again
}

TEST_F(GetModel, UnloadWithoutAModelAnswers11) {
    model_.reset();
    EXPECT_THAT(client_.unloadModel(model_),
                IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
}

TEST_F(GetModel, UnloadWhileOffAnswers11Not15AndKeepsTheModelLoaded) {
    QuavinClient::terminate();
    EXPECT_THAT(client_.unloadModel(model_),
                IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    EXPECT_NE(model_->getMetadata(), nullptr);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
