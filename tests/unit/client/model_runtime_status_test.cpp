#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "quavin/registry.h"
#include "support/recording_model.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using testing::IsOk;
using testing::IsStatus;
using testing::RecordingModel;

constexpr unsigned long long kMost = std::numeric_limits<unsigned long long>::max();

class HostsAccount : public ModelRuntimeStatus {
public:
    using ModelRuntimeStatus::ModelRuntimeStatus;
    using ModelRuntimeStatus::setMaxAllowedMemoryConsumption;
};

TEST(ModelRuntimeStatusTest, StartsAtZeroWithItsLimitAndModel) {
    const auto model = std::make_shared<RecordingModel>();
    const ModelRuntimeStatus account(1000, model);
    EXPECT_EQ(account.getCurrentMemoryConsumption(), 0U);
    EXPECT_EQ(account.getMaxAllowedMemoryConsumption(), 1000U);
    EXPECT_EQ(account.getModel(), model);
}

TEST(ModelRuntimeStatusTest, AValueBelowTheLimitIsStoredAndNamedInTheStatus) {
    ModelRuntimeStatus account(kMost, nullptr);
    EXPECT_THAT(account.setCurrentMemoryConsumption(100),
                IsStatus(MEMORY_LIMIT_EXCEEDED, "Current Memory consumption = 100"));
    EXPECT_EQ(account.getCurrentMemoryConsumption(), 100U);
    EXPECT_THAT(account.setCurrentMemoryConsumption(1048576),
                IsStatus(MEMORY_LIMIT_EXCEEDED, "Current Memory consumption = 1048576"));
    EXPECT_THAT(account.setCurrentMemoryConsumption(0),
                IsStatus(MEMORY_LIMIT_EXCEEDED, "Current Memory consumption = 0"));
    EXPECT_EQ(account.getCurrentMemoryConsumption(), 0U);
}

TEST(ModelRuntimeStatusTest, AValueAtOrAboveTheLimitSucceedsAndIsNotStored) {
    ModelRuntimeStatus account(1000, nullptr);
    account.setCurrentMemoryConsumption(7);
    EXPECT_THAT(account.setCurrentMemoryConsumption(1000), IsOk());
    EXPECT_THAT(account.setCurrentMemoryConsumption(1001), IsOk());
    EXPECT_THAT(account.setCurrentMemoryConsumption(kMost), IsOk());
    EXPECT_EQ(account.getCurrentMemoryConsumption(), 7U);
    EXPECT_THAT(account.setCurrentMemoryConsumption(999),
                IsStatus(MEMORY_LIMIT_EXCEEDED, "Current Memory consumption = 999"));
}

TEST(ModelRuntimeStatusTest, WithTheMaximumLimitOnlyTheMaximumValueIsNotStored) {
    ModelRuntimeStatus account(kMost, nullptr);
    EXPECT_THAT(account.setCurrentMemoryConsumption(kMost), IsOk());
    EXPECT_EQ(account.getCurrentMemoryConsumption(), 0U);
    EXPECT_THAT(
        account.setCurrentMemoryConsumption(kMost - 1),
        IsStatus(MEMORY_LIMIT_EXCEEDED, "Current Memory consumption = 18446744073709551614"));
    EXPECT_EQ(account.getCurrentMemoryConsumption(), kMost - 1);
}

TEST(ModelRuntimeStatusTest, ALimitOfZeroStoresNothing) {
    ModelRuntimeStatus account(0, nullptr);
    EXPECT_THAT(account.setCurrentMemoryConsumption(0), IsOk());
    EXPECT_THAT(account.setCurrentMemoryConsumption(5), IsOk());
    EXPECT_EQ(account.getCurrentMemoryConsumption(), 0U);
}

TEST(ModelRuntimeStatusTest, AddingSetsTheSum) {
    ModelRuntimeStatus account(kMost, nullptr);
    account.setCurrentMemoryConsumption(100);
    EXPECT_THAT(account.addCurrentMemoryConsumption(5),
                IsStatus(MEMORY_LIMIT_EXCEEDED, "Current Memory consumption = 105"));
    EXPECT_EQ(account.getCurrentMemoryConsumption(), 105U);
}

TEST(ModelRuntimeStatusTest, AddingWraps) {
    ModelRuntimeStatus account(kMost, nullptr);
    account.setCurrentMemoryConsumption(kMost - 1);
    EXPECT_THAT(account.addCurrentMemoryConsumption(5),
                IsStatus(MEMORY_LIMIT_EXCEEDED, "Current Memory consumption = 3"));
}

TEST(ModelRuntimeStatusTest, RemovingSetsTheDifference) {
    ModelRuntimeStatus account(kMost, nullptr);
    account.setCurrentMemoryConsumption(100);
    EXPECT_THAT(account.removeCurrentMemoryConsumption(40),
                IsStatus(MEMORY_LIMIT_EXCEEDED, "Current Memory consumption = 60"));
}

TEST(ModelRuntimeStatusTest, RemovingMoreThanIsHeldWrapsToAHugeValue) {
    ModelRuntimeStatus account(kMost, nullptr);
    account.setCurrentMemoryConsumption(100);
    EXPECT_THAT(
        account.removeCurrentMemoryConsumption(102),
        IsStatus(MEMORY_LIMIT_EXCEEDED, "Current Memory consumption = 18446744073709551614"));
    EXPECT_EQ(account.getCurrentMemoryConsumption(), kMost - 1);
}

TEST(ModelRuntimeStatusTest, ARemovalThatWrapsToTheMaximumIsNotStored) {
    ModelRuntimeStatus account(kMost, nullptr);
    account.setCurrentMemoryConsumption(100);
    EXPECT_THAT(account.removeCurrentMemoryConsumption(101), IsOk());
    EXPECT_EQ(account.getCurrentMemoryConsumption(), 100U);
}

TEST(ModelRuntimeStatusTest, TheLimitCanBeReplacedByADerivedAccount) {
    HostsAccount account(kMost, nullptr);
    EXPECT_THAT(account.setMaxAllowedMemoryConsumption(10), IsOk());
    EXPECT_EQ(account.getMaxAllowedMemoryConsumption(), 10U);
    EXPECT_THAT(account.setCurrentMemoryConsumption(10), IsOk());
    EXPECT_EQ(account.getCurrentMemoryConsumption(), 0U);
}

TEST(ModelRuntimeStatusTest, KeepsItsModelAlive) {
    auto model = std::make_shared<RecordingModel>();
    const std::weak_ptr<RecordingModel> watched = model;
    {
        const ModelRuntimeStatus account(kMost, model);
        model.reset();
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace VelmoraQuavin
