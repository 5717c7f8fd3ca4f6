#include "quavin/device.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <vector>

#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using testing::IsOk;

void expectAllUnset(const Device& device) {
    EXPECT_EQ(device.number1, 0U);
    EXPECT_EQ(device.number2, 0U);
    EXPECT_EQ(device.number3, 0U);
    EXPECT_TRUE(device.description.empty());
    EXPECT_FALSE(device.flag1);
    EXPECT_FALSE(device.flag2);
}

TEST(DeviceTest, IsAllZeroByDefault) {
    const Device device;
    EXPECT_TRUE(device.name.empty());
    EXPECT_EQ(device.engineType, QuavinModelType::Undefined);
    expectAllUnset(device);
}

TEST(DeviceTest, TheEngineTypeIs64BitsWide) {
    EXPECT_EQ(sizeof(Device::engineType), 8U);
    EXPECT_TRUE(std::is_copy_constructible_v<Device>);
}

TEST(OpenVinoDeviceManagerTest, ListsOneCpu) {
    const OpenVinoDeviceManager manager;
    const std::vector<Device> devices = manager.getDevices();
    ASSERT_EQ(devices.size(), 1U);
    EXPECT_EQ(devices[0].name, "CPU");
    expectAllUnset(devices[0]);
}

TEST(OpenVinoDeviceManagerTest, TheCpusEngineTypeIsThirtyTwo) {
    const OpenVinoDeviceManager manager;
    EXPECT_EQ(static_cast<std::uint64_t>(manager.getDevices().at(0).engineType), 32U);
}

TEST(OpenVinoDeviceManagerTest, RefreshingAgainAddsNothing) {
    OpenVinoDeviceManager manager;
    EXPECT_THAT(manager.refresh(), IsOk());
    EXPECT_THAT(manager.refresh(), IsOk());
    EXPECT_EQ(manager.getDevices().size(), 1U);
}

TEST(OpenVinoDeviceManagerTest, TheListIsACopy) {
    const OpenVinoDeviceManager manager;
    manager.getDevices().clear();
    manager.getDevices().at(0).name = "changed";
    EXPECT_EQ(manager.getDevices().at(0).name, "CPU");
}

TEST(OpenVinoDeviceManagerTest, IsUsedThroughItsBase) {
    const std::unique_ptr<DeviceManager> manager = std::make_unique<OpenVinoDeviceManager>();
    EXPECT_THAT(manager->refresh(), IsOk());
    EXPECT_EQ(manager->getDevices().size(), 1U);
}

}  // namespace
}  // namespace VelmoraQuavin
