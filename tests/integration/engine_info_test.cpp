// What the library reports about its engine.

#include <gmock/gmock.h>

#include <cctype>
#include <thread>

#include "integration/model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::Contains;
using ::testing::Ge;
using ::testing::IsEmpty;
using ::testing::Le;
using ::testing::Not;

// Checks only what holds on any machine.
void expectToBePlausible(const EngineInfo& info) {
    ASSERT_FALSE(info.runtimeVersion.empty());
    EXPECT_TRUE(std::isdigit(info.runtimeVersion.data()[0])) << info.runtimeVersion;
    EXPECT_EQ(info.device, "CPU");
    EXPECT_FALSE(info.deviceName.empty());
    EXPECT_THAT(info.capabilities, Contains(String("FP32")));
    const int processors = static_cast<int>(std::thread::hardware_concurrency());
#ifdef QUAVIN_ENGINE_IS_ADAPTER  // others need not report these
    EXPECT_EQ(info.precision, "f32");
    EXPECT_THAT(info.threads, Ge(1));
    EXPECT_THAT(info.streams, Ge(1));
#endif
    EXPECT_THAT(info.threads, Le(processors));
    EXPECT_THAT(info.streams, Le(processors));
}

TEST(EngineInfoOfTheClient, IsAvailableWithoutInit) {
    ASSERT_FALSE(QuavinClient::isInitialized());
    EngineInfo info;
    EXPECT_THAT(QuavinClient::getEngineInfo(info), IsOk());
    expectToBePlausible(info);
}

TEST(EngineInfoOfTheClient, ReplacesEarlierContent) {
    EngineInfo info;
    info.device = "another";
    info.capabilities = {"flying", "swimming"};
    EXPECT_THAT(QuavinClient::getEngineInfo(info), IsOk());
    expectToBePlausible(info);
    EXPECT_THAT(info.capabilities, Not(Contains(String("flying"))));
}

using EngineInfoOfAModel = ModelTest;

TEST_F(EngineInfoOfAModel, IsPlausibleAfterLoading) {
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    EngineInfo info;
    EXPECT_THAT(model_->getEngineInfo(info), IsOk());
    expectToBePlausible(info);
}

TEST_F(EngineInfoOfAModel, MatchesWhatTheClientReportedBeforehand) {
    EngineInfo expected;
    ASSERT_THAT(QuavinClient::getEngineInfo(expected), IsOk());
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    EngineInfo info;
    ASSERT_THAT(model_->getEngineInfo(info), IsOk());
    EXPECT_EQ(info.runtimeVersion, expected.runtimeVersion);
    EXPECT_EQ(info.deviceName, expected.deviceName);
    EXPECT_EQ(info.precision, expected.precision);
    EXPECT_EQ(info.threads, expected.threads);
    EXPECT_EQ(info.streams, expected.streams);
    EXPECT_EQ(info.capabilities, expected.capabilities);
}

TEST_F(EngineInfoOfAModel, FailsAndLeavesTheInfoAloneWithoutALoadedModel) {
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    const auto metadata = model_->getMetadata();
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    EngineInfo info;
    info.device = "as it was";
    EXPECT_THAT(model_->getEngineInfo(info),
                IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    EXPECT_EQ(info.device, "as it was");

    ASSERT_THAT(model_->load(metadata), IsOk());
    EXPECT_THAT(model_->getEngineInfo(info), IsOk());
    expectToBePlausible(info);
}

TEST_F(EngineInfoOfAModel, IsUnavailableAfterAFailedLoad) {
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    EXPECT_THAT(model_->load(nullptr),
                IsStatus(INVALID_ARGUMENTS, "There is no metadata to load a model from"));
    EngineInfo info;
    EXPECT_THAT(model_->getEngineInfo(info), IsOk());  // nothing has been loaded in its place

    writePackage(directory_, affineNetwork(), "other");
    directory_.write("other/net.xml", "no network");
    EXPECT_THAT(load("other"), IsStatusWith(FILE_ERROR, Not(IsEmpty())));
    ASSERT_NE(model_, nullptr);
    EXPECT_THAT(model_->getEngineInfo(info),
                IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
