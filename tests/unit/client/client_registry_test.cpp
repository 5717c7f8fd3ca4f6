// The client's registry as it is switched on and off.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "client_fixture.h"
#include "quavin/client.h"
#include "support/recording_model.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::IsOk;
using testing::IsStatus;
using ::testing::Not;
using testing::RecordingModel;

class ClientRegistryTest : public ClientFixture {
protected:
    ClientRegistryTest() : client_(initialized()) {
        client_.getModelManager().registerModel(model_);
        model_->getRuntimeStatus()->setCurrentMemoryConsumption(100);
    }
    ~ClientRegistryTest() override {
        model_->unloadAnswer = {SUCCESS, ""};
        client_.getModelManager().unloadModel(model_);
    }

    std::shared_ptr<RecordingModel> model_ = std::make_shared<RecordingModel>();
    QuavinClient& client_;

private:
    static QuavinClient& initialized() {
        QuavinClient::init(QuavinConfig());
        return QuavinClient::instance();
    }
};

TEST_F(ClientRegistryTest, TheQueryListsRegisteredModels) {
    const RuntimeStatus status = client_.queryRuntimeStatus();
    EXPECT_THAT(status.getLoadedModels(), ElementsAre(model_));
    EXPECT_EQ(status.getTotalMemoryConsumption(), 100U);
}

TEST_F(ClientRegistryTest, TheQueryIsEmptyWhileOff) {
    QuavinClient::terminate();
    EXPECT_THAT(client_.queryRuntimeStatus().getLoadedModels(), IsEmpty());
    EXPECT_EQ(client_.queryRuntimeStatus().getTotalMemoryConsumption(), 0U);
}

TEST_F(ClientRegistryTest, AModelOutlivesTerminateAndIsCountedAfterANewInit) {
    QuavinClient::terminate();
    EXPECT_THAT(model_->calls, IsEmpty());
    QuavinClient::init(QuavinConfig());
    EXPECT_THAT(QuavinClient::instance().queryRuntimeStatus().getLoadedModels(),
                ElementsAre(model_));
    EXPECT_EQ(client_.queryRuntimeStatus().getTotalMemoryConsumption(), 100U);
}

TEST_F(ClientRegistryTest, UnloadingThroughTheManagerRemovesTheModel) {
    EXPECT_THAT(client_.getModelManager().unloadModel(model_), IsOk());
    EXPECT_THAT(client_.queryRuntimeStatus().getLoadedModels(), Not(Contains(model_)));
}

TEST_F(ClientRegistryTest, UnloadingThroughTheClientKeepsPointerAndRegistration) {
    std::shared_ptr<QuavinModel> model = model_;
    EXPECT_THAT(client_.unloadModel(model), IsOk());
    EXPECT_EQ(model, model_);
    EXPECT_THAT(model_->calls, ElementsAre("unload"));
    EXPECT_THAT(client_.queryRuntimeStatus().getLoadedModels(), ElementsAre(model_));
}

TEST_F(ClientRegistryTest, UnloadingReturnsTheReleaseHooksStatus) {
    std::shared_ptr<QuavinModel> model = model_;
    model_->unloadAnswer = {FAILURE, "cannot release"};
    EXPECT_THAT(client_.unloadModel(model), IsStatus(FAILURE, "cannot release"));
}

TEST_F(ClientRegistryTest, UnloadingNullReportsNoModelLoaded) {
    std::shared_ptr<QuavinModel> none;
    EXPECT_THAT(client_.unloadModel(none), IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
}

TEST_F(ClientRegistryTest, UnloadingWhileOffReportsNoModelLoadedAndLeavesTheModelAlone) {
    QuavinClient::terminate();
    std::shared_ptr<QuavinModel> model = model_;
    EXPECT_THAT(client_.unloadModel(model), IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    EXPECT_EQ(model, model_);
    EXPECT_THAT(model_->calls, IsEmpty());
}

}  // namespace
}  // namespace VelmoraQuavin
