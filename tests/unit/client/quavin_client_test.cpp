#include "quavin/client.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "client_fixture.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using testing::expectThrows;
using ::testing::IsEmpty;
using testing::IsOk;
using testing::IsStatus;

constexpr const char* kNotInitialized =
    "Trying to use quavin client before the sdk was initialized!";

class QuavinClientTest : public ClientFixture {};

TEST_F(QuavinClientTest, IsOnBetweenInitAndTerminate) {
    EXPECT_FALSE(QuavinClient::isInitialized());
    EXPECT_THAT(QuavinClient::init(QuavinConfig()), IsOk());
    EXPECT_TRUE(QuavinClient::isInitialized());
    QuavinClient::terminate();
    EXPECT_FALSE(QuavinClient::isInitialized());
}

TEST_F(QuavinClientTest, ASecondInitIsAFailureWithoutAText) {
    EXPECT_THAT(QuavinClient::init(QuavinConfig()), IsOk());
    EXPECT_THAT(QuavinClient::init(QuavinConfig()), IsStatus(FAILURE, ""));
    EXPECT_TRUE(QuavinClient::isInitialized());
}

TEST_F(QuavinClientTest, CanBeSwitchedOnAgainAfterTerminate) {
    for (int cycle = 0; cycle < 3; ++cycle) {
        EXPECT_THAT(QuavinClient::init(QuavinConfig()), IsOk());
        QuavinClient::terminate();
    }
    EXPECT_FALSE(QuavinClient::isInitialized());
}

TEST_F(QuavinClientTest, TerminateWhileOffDoesNothing) {
    QuavinClient::terminate();
    QuavinClient::terminate();
    EXPECT_FALSE(QuavinClient::isInitialized());
}

TEST_F(QuavinClientTest, InstanceThrowsWhileOff) {
    expectThrows<Exception>([] { QuavinClient::instance(); }, FAILURE, kNotInitialized);
    QuavinClient::init(QuavinConfig());
    QuavinClient::terminate();
    expectThrows<Exception>([] { QuavinClient::instance(); }, FAILURE, kNotInitialized);
}

TEST_F(QuavinClientTest, InstanceIsTheSameObjectAcrossCycles) {
    QuavinClient::init(QuavinConfig());
    QuavinClient* const client = &QuavinClient::instance();
    EXPECT_EQ(&QuavinClient::instance(), client);
    QuavinClient::terminate();
    QuavinClient::init(QuavinConfig());
    EXPECT_EQ(&QuavinClient::instance(), client);
}

TEST_F(QuavinClientTest, TheEngineTypeIsFourEvenWhileOff) {
    EXPECT_EQ(static_cast<std::uint64_t>(QuavinClient::getEngineType()), 4U);
    QuavinClient::init(QuavinConfig());
    EXPECT_EQ(QuavinClient::getEngineType(), QuavinModelType::Openvino);
}

TEST_F(QuavinClientTest, NoDevicesAreListedOnOrOff) {
    EXPECT_THAT(QuavinClient::getDevices(), IsEmpty());
    QuavinClient::init(QuavinConfig());
    EXPECT_THAT(QuavinClient::getDevices(), IsEmpty());
}

class QuavinClientInitTermTest : public ClientFixture {};

TEST_F(QuavinClientInitTermTest, SwitchesOnForAScope) {
    {
        const QuavinClientInitTerm scope{QuavinConfig()};
        EXPECT_TRUE(QuavinClient::isInitialized());
    }
    EXPECT_FALSE(QuavinClient::isInitialized());
}

TEST_F(QuavinClientInitTermTest, ThrowsWhileTheClientIsOnAndLeavesItOn) {
    QuavinClient::init(QuavinConfig());
    expectThrows<Exception>([] { QuavinClientInitTerm scope{QuavinConfig()}; }, FAILURE,
                            "Quavin client failed to initialize");
    EXPECT_TRUE(QuavinClient::isInitialized());
}

TEST_F(QuavinClientInitTermTest, ANestedScopeThrowsAndTheFirstStaysOn) {
    const QuavinClientInitTerm scope{QuavinConfig()};
    EXPECT_THROW(QuavinClientInitTerm{QuavinConfig()}, Exception);
    EXPECT_TRUE(QuavinClient::isInitialized());
}

}  // namespace
}  // namespace VelmoraQuavin
