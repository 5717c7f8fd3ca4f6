#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

#include "quavin/registry.h"
#include "support/recording_model.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RecordingModel;

using Models = std::vector<std::shared_ptr<QuavinModel>>;

class RuntimeStatusTest : public ::testing::Test {
protected:
    std::shared_ptr<RecordingModel> registeredModel(unsigned long long consumption) {
        auto model = std::make_shared<RecordingModel>();
        manager_.registerModel(model);
        model->getRuntimeStatus()->setCurrentMemoryConsumption(consumption);
        return model;
    }

    ModelManager manager_;
};

TEST_F(RuntimeStatusTest, AnEmptySnapshotContainsNothing) {
    const RuntimeStatus status((Models()));
    EXPECT_THAT(status.getLoadedModels(), IsEmpty());
    EXPECT_THAT(status.getModelsRuntimeStatus(), IsEmpty());
    EXPECT_EQ(status.getTotalMemoryConsumption(), 0U);
    EXPECT_EQ(status.getMaxAllowedTotalMemory(), 0U);
}

TEST_F(RuntimeStatusTest, ListsModelsAndAccountsInTheSameOrder) {
    const auto first = registeredModel(100);
    const auto second = registeredModel(23);
    const RuntimeStatus status = manager_.getRuntimeStatus();
    EXPECT_THAT(status.getLoadedModels(), ElementsAre(first, second));

    const std::vector<ModelRuntimeStatus> accounts = status.getModelsRuntimeStatus();
    ASSERT_EQ(accounts.size(), 2U);
    EXPECT_EQ(accounts[0].getModel(), first);
    EXPECT_EQ(accounts[0].getCurrentMemoryConsumption(), 100U);
    EXPECT_EQ(accounts[1].getModel(), second);
    EXPECT_EQ(accounts[1].getCurrentMemoryConsumption(), 23U);
}

TEST_F(RuntimeStatusTest, TheTotalIsTheSumOfAllAccounts) {
    registeredModel(100);
    registeredModel(23);
    EXPECT_EQ(manager_.getRuntimeStatus().getTotalMemoryConsumption(), 123U);
}

TEST_F(RuntimeStatusTest, TheTotalWraps) {
    const unsigned long long almostMost = std::numeric_limits<unsigned long long>::max() - 1;
    registeredModel(almostMost);
    registeredModel(5);
    EXPECT_EQ(manager_.getRuntimeStatus().getTotalMemoryConsumption(), 3U);
}

TEST_F(RuntimeStatusTest, ThereIsNoLimitForAllModelsTogether) {
    registeredModel(100);
    EXPECT_EQ(manager_.getRuntimeStatus().getMaxAllowedTotalMemory(), 0U);
}

TEST_F(RuntimeStatusTest, ReturnsTheAccountOfOneModel) {
    registeredModel(100);
    const auto model = registeredModel(23);
    const ModelRuntimeStatus account = manager_.getRuntimeStatus().getModelRuntimeStatus(model);
    EXPECT_EQ(account.getModel(), model);
    EXPECT_EQ(account.getCurrentMemoryConsumption(), 23U);
}

TEST_F(RuntimeStatusTest, ThrowsForAnUnknownModel) {
    registeredModel(100);
    const RuntimeStatus status = manager_.getRuntimeStatus();
    const auto other = std::make_shared<RecordingModel>();
    testing::expectThrows<Exception>([&] { status.getModelRuntimeStatus(other); }, FAILURE,
                                     "model not found - this should not occur");
    testing::expectThrows<Exception>([&] { status.getModelRuntimeStatus(nullptr); }, FAILURE,
                                     "model not found - this should not occur");
}

TEST_F(RuntimeStatusTest, AModelListedTwiceHasTwoEqualAccounts) {
    const auto model = registeredModel(100);
    manager_.registerModel(model);
    model->getRuntimeStatus()->setCurrentMemoryConsumption(7);
    const RuntimeStatus status = manager_.getRuntimeStatus();
    EXPECT_THAT(status.getLoadedModels(), ElementsAre(model, model));
    EXPECT_EQ(status.getTotalMemoryConsumption(), 14U);
}

TEST_F(RuntimeStatusTest, IsUnaffectedByLaterChanges) {
    const auto model = registeredModel(100);
    const RuntimeStatus status = manager_.getRuntimeStatus();
    model->getRuntimeStatus()->setCurrentMemoryConsumption(999);
    manager_.unloadModel(model);
    EXPECT_EQ(status.getTotalMemoryConsumption(), 100U);
    EXPECT_THAT(status.getLoadedModels(), ElementsAre(model));
    EXPECT_EQ(status.getModelRuntimeStatus(model).getCurrentMemoryConsumption(), 100U);
}

TEST_F(RuntimeStatusTest, WritingToACopyOfAnAccountChangesNothing) {
    const auto model = registeredModel(100);
    const RuntimeStatus status = manager_.getRuntimeStatus();
    status.getModelRuntimeStatus(model).setCurrentMemoryConsumption(7);
    EXPECT_EQ(status.getTotalMemoryConsumption(), 100U);
    EXPECT_EQ(model->getRuntimeStatus()->getCurrentMemoryConsumption(), 100U);
}

TEST_F(RuntimeStatusTest, LeavesOutModelsWithoutAnAccount) {
    const auto model = registeredModel(100);
    const auto unregistered = std::make_shared<RecordingModel>();
    const RuntimeStatus status(Models{unregistered, model, nullptr});
    EXPECT_THAT(status.getLoadedModels(), ElementsAre(model));
    EXPECT_EQ(status.getModelsRuntimeStatus().size(), 1U);
}

TEST_F(RuntimeStatusTest, ASnapshotKeepsItsModelsAliveWhileItExists) {
    auto model = registeredModel(100);
    const std::weak_ptr<RecordingModel> watched = model;
    {
        const RuntimeStatus status = manager_.getRuntimeStatus();
        manager_.unloadModel(model);
        model.reset();
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace VelmoraQuavin
