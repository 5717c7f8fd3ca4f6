// What the runtime reports, under the interface's names.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "network_texts.hpp"
#include "network_under_test.hpp"
#include "runtime_core.hpp"

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

TEST(PropertiesTest, SettingsUnderTheNamesOf2020ReachTheNetwork) {
    EXPECT_THAT(configOf(loaded({{"CPU_THREADS_NUM", "1"}}), "INFERENCE_NUM_THREADS"), StrEq("1"));
    EXPECT_THAT(configOf(loaded({{"CPU_THROUGHPUT_STREAMS", "1"}}), "NUM_STREAMS"), StrEq("1"));
    EXPECT_THAT(
        configOf(loaded({{"CPU_THROUGHPUT_STREAMS", "CPU_THROUGHPUT_AUTO"}}), "PERFORMANCE_HINT"),
        StrEq("THROUGHPUT"));
    EXPECT_THAT(configOf(loaded({{"ENFORCE_BF16", "NO"}}), "INFERENCE_PRECISION_HINT"),
                StrEq("f32"));
}

TEST(PropertiesTest, EnforcedBfloat16IsWhateverTheDeviceComputesFastestWith) {
    const auto capabilities =
        Core().GetMetric("CPU", "OPTIMIZATION_CAPABILITIES").as<std::vector<std::string>>();
    const auto has = [&](const char* capability) {
        return testing::Value(capabilities, Contains(capability));
    };
    const char* const expected = has("BF16") ? "bf16" : has("FP16") ? "f16" : "f32";
    EXPECT_THAT(configOf(loaded({{"ENFORCE_BF16", "YES"}}), "INFERENCE_PRECISION_HINT"),
                StrEq(expected));
}

TEST(PropertiesTest, SettingsOfOneNetworkAreNotThoseOfTheNext) {
    const ExecutableNetwork usual = loaded();
    Core core;
    const auto load = [&](const std::map<std::string, std::string>& config) {
        return core.LoadNetwork(CNNNetwork(readNetwork(doublingNetwork())), "CPU", config);
    };
    const ExecutableNetwork other = load({{"CPU_THREADS_NUM", "1"}, {"ENFORCE_BF16", "YES"}});
    EXPECT_THAT(configOf(other, "CPU_THREADS_NUM"), StrEq("1"));
    const ExecutableNetwork again = load({});
    for (const char* const name : {"CPU_THREADS_NUM", "INFERENCE_PRECISION_HINT"}) {
        EXPECT_THAT(configOf(again, name), StrEq(configOf(usual, name)));
    }
}

TEST(PropertiesTest, RefusedSettingsAreNamed) {
    EXPECT_THAT(
        [] {
            loaded({{"CPU_THREADS_NUM", "many"}});
        },
        ThrowsMessage<ParameterMismatch>(HasSubstr("CPU_THREADS_NUM = many: ")));
    EXPECT_THAT(
        [] {
            loaded({{"COLOUR", "red"}});
        },
        ThrowsMessage<ParameterMismatch>(HasSubstr("COLOUR = red: ")));
}

TEST(PropertiesTest, CoresWithTheSameSettingsAreOne) {
    const std::map<std::string, std::string> settings = {{"CPU_THREADS_NUM", "1"}};
    const auto core = runtime::sharedCore("CPU", settings);
    EXPECT_EQ(runtime::sharedCore("CPU", settings), core);
    EXPECT_NE(runtime::sharedCore("CPU", {{"CPU_THREADS_NUM", "2"}}), core);
    EXPECT_NE(runtime::sharedCore(), core);
    EXPECT_EQ(runtime::sharedCore("CPU", {}), runtime::sharedCore());
}

TEST(PropertiesTest, TheEngineReportsItsBuild) {
    const Version* const version = GetInferenceEngineVersion();
    ASSERT_NE(version, nullptr);
    EXPECT_THAT(version->buildNumber, HasSubstr("."));
    EXPECT_THAT(version->description, HasSubstr("OpenVINO"));
}

}  // namespace
}  // namespace InferenceEngine
