#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "quavin/registry.h"
#include "support/recording_model.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::IsOk;
using testing::IsStatus;
using testing::IsStatusWith;
using ::testing::Not;
using testing::RecordingModel;

constexpr const char* kNotRegistered = "Could not remove model from references";

class ModelManagerTest : public ::testing::Test {
protected:
    ModelManagerTest() { manager_.emplace(); }

    std::vector<std::shared_ptr<QuavinModel>> registered() const {
        return manager_->getRuntimeStatus().getLoadedModels();
    }

    std::shared_ptr<RecordingModel> model_ = std::make_shared<RecordingModel>();
    std::shared_ptr<RecordingModel> other_ = std::make_shared<RecordingModel>();
    std::optional<ModelManager> manager_;
};

TEST_F(ModelManagerTest, StartsEmpty) {
    EXPECT_THAT(registered(), IsEmpty());
}

TEST_F(ModelManagerTest, KeepsTheOrderOfRegistration) {
    EXPECT_THAT(manager_->registerModel(model_), IsOk());
    EXPECT_THAT(manager_->registerModel(other_), IsOk());
    EXPECT_THAT(registered(), ElementsAre(model_, other_));
}

TEST_F(ModelManagerTest, RegisteringOpensAnAccountWithTheMaximumLimit) {
    manager_->registerModel(model_);
    const std::shared_ptr<ModelRuntimeStatus> account = model_->getRuntimeStatus();
    ASSERT_NE(account, nullptr);
    EXPECT_EQ(account->getMaxAllowedMemoryConsumption(), 18446744073709551615ULL);
    EXPECT_EQ(account->getCurrentMemoryConsumption(), 0U);
    EXPECT_EQ(account->getModel(), model_);
}

TEST_F(ModelManagerTest, RegisteringCallsNoHook) {
    manager_->registerModel(model_);
    EXPECT_THAT(model_->calls, IsEmpty());
}

TEST_F(ModelManagerTest, RegisteringTwiceListsTwiceAndOpensANewAccount) {
    manager_->registerModel(model_);
    model_->getRuntimeStatus()->setCurrentMemoryConsumption(100);
    EXPECT_THAT(manager_->registerModel(model_), IsOk());
    EXPECT_THAT(registered(), ElementsAre(model_, model_));
    EXPECT_EQ(model_->getRuntimeStatus()->getCurrentMemoryConsumption(), 0U);
}

TEST_F(ModelManagerTest, RegisteringNullIsRefused) {
    EXPECT_THAT(manager_->registerModel(nullptr), IsStatusWith(INVALID_ARGUMENTS, Not(IsEmpty())));
    EXPECT_THAT(registered(), IsEmpty());
}

TEST_F(ModelManagerTest, UnloadingReleasesAndRemovesTheModel) {
    manager_->registerModel(model_);
    manager_->registerModel(other_);
    EXPECT_THAT(manager_->unloadModel(model_), IsOk());
    EXPECT_THAT(model_->calls, ElementsAre("unload"));
    EXPECT_THAT(registered(), ElementsAre(other_));
    EXPECT_THAT(other_->calls, IsEmpty());
}

TEST_F(ModelManagerTest, UnloadingReturnsTheReleaseHooksStatus) {
    manager_->registerModel(model_);
    model_->unloadAnswer = {SUCCESS, "with a remark"};
    EXPECT_THAT(manager_->unloadModel(model_), IsStatus(SUCCESS, "with a remark"));
}

TEST_F(ModelManagerTest, UnloadingRemovesEveryRegistrationAndKeepsTheOrderOfTheRest) {
    const auto third = std::make_shared<RecordingModel>();
    for (const auto& model : {model_, other_, model_, third, model_}) {
        manager_->registerModel(model);
    }
    EXPECT_THAT(manager_->unloadModel(model_), IsOk());
    EXPECT_THAT(model_->calls, ElementsAre("unload"));
    EXPECT_THAT(registered(), ElementsAre(other_, third));
}

TEST_F(ModelManagerTest, AFailingReleaseHookKeepsTheRegistration) {
    manager_->registerModel(model_);
    model_->unloadAnswer = {FAILURE, "cannot release"};
    EXPECT_THAT(manager_->unloadModel(model_), IsStatus(FAILURE, "cannot release"));
    EXPECT_THAT(registered(), ElementsAre(model_));
    EXPECT_NE(model_->getRuntimeStatus(), nullptr);
}

TEST_F(ModelManagerTest, UnloadingAnUnregisteredModelRunsItsHookFirst) {
    manager_->registerModel(other_);
    EXPECT_THAT(manager_->unloadModel(model_), IsStatus(MODEL_NOT_LOADED, kNotRegistered));
    EXPECT_THAT(model_->calls, ElementsAre("unload"));
    EXPECT_THAT(registered(), ElementsAre(other_));
}

TEST_F(ModelManagerTest, UnloadingAnUnregisteredModelReturnsItsHooksFailure) {
    model_->unloadAnswer = {FAILURE, "cannot release"};
    EXPECT_THAT(manager_->unloadModel(model_), IsStatus(FAILURE, "cannot release"));
}

TEST_F(ModelManagerTest, UnloadingTwiceReportsNotLoaded) {
    manager_->registerModel(model_);
    manager_->unloadModel(model_);
    EXPECT_THAT(manager_->unloadModel(model_), IsStatus(MODEL_NOT_LOADED, kNotRegistered));
}

TEST_F(ModelManagerTest, UnloadingNullIsRefused) {
    EXPECT_THAT(manager_->unloadModel(nullptr), IsStatusWith(INVALID_ARGUMENTS, Not(IsEmpty())));
}

TEST_F(ModelManagerTest, UnloadingClosesTheAccountAndReleasesTheModel) {
    manager_->registerModel(model_);
    manager_->unloadModel(model_);
    EXPECT_EQ(model_->getRuntimeStatus(), nullptr);
    const std::weak_ptr<RecordingModel> watched = model_;
    model_.reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(ModelManagerTest, ARegisteredModelOutlivesTheHostsPointer) {
    manager_->registerModel(model_);
    const std::weak_ptr<RecordingModel> watched = model_;
    model_.reset();
    EXPECT_FALSE(watched.expired());
    manager_->unloadModel(watched.lock());
    EXPECT_TRUE(watched.expired());
}

TEST_F(ModelManagerTest, UnloadingAcceptsTheHostsLastPointer) {
    const std::weak_ptr<RecordingModel> watched = model_;
    std::shared_ptr<QuavinModel> last = std::move(model_);
    manager_->registerModel(last);
    EXPECT_THAT(manager_->unloadModel(last), IsOk());
    last.reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(ModelManagerTest, DestructionClosesTheAccountsAndFreesTheModels) {
    manager_->registerModel(model_);
    manager_->registerModel(model_);
    manager_->registerModel(other_);
    const std::weak_ptr<RecordingModel> watched = model_;
    model_.reset();
    manager_.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(other_->getRuntimeStatus(), nullptr);
}

TEST_F(ModelManagerTest, DestructionCallsNoHook) {
    manager_->registerModel(model_);
    manager_.reset();
    EXPECT_THAT(model_->calls, IsEmpty());
}

}  // namespace
}  // namespace VelmoraQuavin
