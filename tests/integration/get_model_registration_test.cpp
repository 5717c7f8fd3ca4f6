// Which models the client holds and lists.

#include "integration/get_model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::IsEmpty;

TEST_F(GetModel, DeviceOverloadsRegisterAndTypeOverloadsDoNot) {
    const auto metadata = readManifest();
    const auto type = QuavinModelType::Openvino;
    ASSERT_EQ(registeredModels(), 0U);  // `other_` was loaded by type
    ASSERT_THAT(client_.getModel(utf16(directory_), model_, 0, type), IsOk());
    ASSERT_THAT(client_.getModel(metadata, model_, type), IsOk());
    EXPECT_EQ(registeredModels(), 0U);
    EXPECT_EQ(model_->getRuntimeStatus(), nullptr);

    std::vector<std::shared_ptr<QuavinModel>> expected;
    const auto expectRegistered = [&](const QuavinStatus& status) {
        ASSERT_THAT(status, IsOk());
        expected.push_back(model_);
        EXPECT_EQ(client_.queryRuntimeStatus().getLoadedModels(), expected);
        EXPECT_NE(model_->getRuntimeStatus(), nullptr);
    };
    expectRegistered(client_.getModel(directory_.text(), model_, Device(), 0));
    expectRegistered(client_.getModel(utf16(directory_), model_, Device(), 0));
    expectRegistered(client_.getModel(metadata, model_, Device()));
}

TEST_F(GetModel, ARegisteredModelIsHeldByTheClientAndAnUnregisteredOneIsNot) {
    std::weak_ptr<QuavinModel> plain = model_;
    other_.reset();
    model_.reset();
    EXPECT_TRUE(plain.expired());
    ASSERT_THAT(client_.getModel(directory_.text(), model_, Device(), 0), IsOk());
    std::weak_ptr<QuavinModel> registered = model_;
    model_.reset();
    EXPECT_FALSE(registered.expired());
    EXPECT_THAT(client_.getModelManager().unloadModel(registered.lock()), IsOk());
    EXPECT_TRUE(registered.expired());
}

TEST_F(GetModel, AFailedDeviceLoadStaysRegisteredAndClearsThePointer) {
    takeAComponentAway();
    EXPECT_THAT(client_.getModel(directory_.text(), model_, Device(), 0),
                IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
    EXPECT_EQ(model_, nullptr);
    EXPECT_EQ(registeredModels(), 1U);
    model_ = other_;
    EXPECT_THAT(client_.getModel(readManifest(), model_, Device()),
                IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
    EXPECT_EQ(model_, nullptr);
    EXPECT_EQ(registeredModels(), 2U);
}

TEST_F(GetModel, AModelRegisteredByAFailedDeviceLoadMayBeUnloaded) {
    takeTheInputsAway();
    EXPECT_THAT(client_.getModel(directory_.text(), model_, Device(), 0),
                IsStatus(MODEL_METADATA_ERROR, kNoInput));
    EXPECT_EQ(model_, nullptr);
    ASSERT_EQ(registeredModels(), 1U);
    const RuntimeStatus status = client_.queryRuntimeStatus();
    EXPECT_TRUE(client_.getModelManager().unloadModel(status.getLoadedModels().at(0)).ok());
    EXPECT_EQ(registeredModels(), 0U);
}

TEST_F(GetModel, ADeviceLoadThatThrowsStaysRegisteredToo) {
    breakTheTopology();
    EXPECT_THAT(client_.getModel(directory_.text(), model_, Device(), 0),
                IsStatusWith(FILE_ERROR, Not(IsEmpty())));
    EXPECT_EQ(client_.queryRuntimeStatus().getLoadedModels(), (std::vector{model_}));
}

TEST_F(GetModel, AFailedTypeLoadRegistersNothing) {
    takeAComponentAway();
    EXPECT_THAT(load(), IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
    breakTheTopology();
    writeManifest(directory_, describe(sumNetwork()));
    EXPECT_THAT(load(), IsStatusWith(FILE_ERROR, Not(IsEmpty())));
    EXPECT_EQ(registeredModels(), 0U);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
