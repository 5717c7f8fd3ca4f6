// What the runtime reports, under the interface's names.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "network_texts.hpp"
#include "network_under_test.hpp"

namespace InferenceEngine {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StrEq;
using testing::ThrowsMessage;
using General = details::InferenceEngineException;

ExecutableNetwork loaded(const std::map<std::string, std::string>& config = {}) {
    return Core().LoadNetwork(CNNNetwork(readNetwork(doublingNetwork())), "CPU", config);
}

std::string configOf(const ExecutableNetwork& network, const char* name) {
    return network.GetConfig(name).as<std::string>();
}

TEST(PropertiesTest, ALoadedNetworkReportsItsConfiguration) {
    const ExecutableNetwork network =
        loaded({{"INFERENCE_NUM_THREADS", "1"}, {"NUM_STREAMS", "1"}});
    EXPECT_THAT(configOf(network, "CPU_THREADS_NUM"), StrEq("1"));
    EXPECT_THAT(configOf(network, "CPU_THROUGHPUT_STREAMS"), StrEq("1"));
    EXPECT_THAT(configOf(network, "INFERENCE_PRECISION_HINT"), StrEq("f32"));
}

TEST(PropertiesTest, ANetworkLoadedWithoutConfigurationReportsSinglePrecision) {
    EXPECT_THAT(configOf(loaded(), "INFERENCE_PRECISION_HINT"), StrEq("f32"));
}

TEST(PropertiesTest, ADeviceReportsSinglePrecisionBeforeAnythingIsLoaded) {
    EXPECT_THAT(Core().GetConfig("CPU", "INFERENCE_PRECISION_HINT").as<std::string>(),
                StrEq("f32"));
}

TEST(PropertiesTest, ADeviceReportsItsNameAndCapabilities) {
    const Core core;
    EXPECT_THAT(core.GetMetric("CPU", "FULL_DEVICE_NAME").as<std::string>(), Not(IsEmpty()));
    EXPECT_THAT(core.GetMetric("CPU", "OPTIMIZATION_CAPABILITIES").as<std::vector<std::string>>(),
                AllOf(Contains("FP32"), Not(Contains(HasSubstr(" ")))));
}

TEST(PropertiesTest, UnknownPropertiesAreRefusedByName) {
    const Core core;
    EXPECT_THAT([&] { core.GetConfig("CPU", "COLOUR"); },
                ThrowsMessage<General>(HasSubstr("COLOUR")));
    EXPECT_THAT([&] { core.GetMetric("CPU", "COLOUR"); },
                ThrowsMessage<General>(HasSubstr("COLOUR")));
    EXPECT_THAT([&] { core.GetMetric("NOWHERE", "FULL_DEVICE_NAME"); },
                ThrowsMessage<General>(HasSubstr("NOWHERE")));
    const ExecutableNetwork network = loaded();
    EXPECT_THAT([&] { network.GetConfig("COLOUR"); }, ThrowsMessage<General>(HasSubstr("COLOUR")));
}

TEST(PropertiesTest, TheEngineReportsItsBuild) {
    const Version* const version = GetInferenceEngineVersion();
    ASSERT_NE(version, nullptr);
    EXPECT_THAT(version->buildNumber, HasSubstr("."));
    EXPECT_THAT(version->description, HasSubstr("OpenVINO"));
}

}  // namespace
}  // namespace InferenceEngine
