// What engines of different releases report about themselves, and what they refuse to report.

#include "engine/openvino/openvino_engine_info.h"
#include "faulty_model_test.h"
#include "quavin/client.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EngineInfoTest : public FaultyModelTest {
protected:
    EngineInfo info() {
        EXPECT_THAT(load(), IsOk());
        EngineInfo reported;
        EXPECT_THAT(model_->getEngineInfo(reported), IsOk());
        return reported;
    }
    std::string precision() { return info().precision.str(); }
};

TEST_F(EngineInfoTest, MatchesWhatTheEngineReports) {
    static constexpr InferenceEngine::Version kVersion = {{2, 1}, "a build", "an engine"};
    engine_.version = &kVersion;
    engine_.metrics = {
        {{"CPU", "FULL_DEVICE_NAME"}, std::string("a processor")},
        {{"CPU", "OPTIMIZATION_CAPABILITIES"}, std::vector<std::string>{"FP32", "INT8"}}};
    engine_.settings = {{"CPU_THREADS_NUM", std::string("12")},
                        {"CPU_THROUGHPUT_STREAMS", std::string("3")},
                        {"INFERENCE_PRECISION_HINT", std::string("f16")}};
    for (const EngineInfo& reported : {info(), internal::openVinoEngineInfo({})}) {
        EXPECT_EQ(reported.runtimeVersion, "a build");
        EXPECT_EQ(reported.device, "CPU");
        EXPECT_EQ(reported.deviceName, "a processor");
        EXPECT_EQ(reported.precision, "f16");
        EXPECT_EQ(reported.threads, 12);
        EXPECT_EQ(reported.streams, 3);
        EXPECT_THAT(reported.capabilities, ElementsAre("FP32", "INT8"));
    }
}

TEST_F(EngineInfoTest, UsesTheBfloat16SettingOfEnginesFrom2020) {
    EXPECT_EQ(precision(), "");
    engine_.settings["ENFORCE_BF16"] = std::string("NO");
    EXPECT_EQ(precision(), "f32");
    engine_.settings["ENFORCE_BF16"] = std::string("YES");
    EXPECT_EQ(precision(), "bf16");
    engine_.settings["INFERENCE_PRECISION_HINT"] = std::string("f32");
    EXPECT_EQ(precision(), "f32");
}

TEST_F(EngineInfoTest, IsEmptyIfTheEngineRefusesAndTheModelStillLoads) {
    for (const bool throwsNumbers : {false, true}) {
        engine_.throwsNumbers = throwsNumbers;
        const EngineInfo reported = info();
        EXPECT_EQ(reported.runtimeVersion, "");
        EXPECT_EQ(reported.device, "CPU");
        EXPECT_EQ(reported.deviceName, "");
        EXPECT_EQ(reported.precision, "");
        EXPECT_EQ(reported.threads, 0);
        EXPECT_EQ(reported.streams, 0);
        EXPECT_THAT(reported.capabilities, IsEmpty());
    }
}

TEST_F(EngineInfoTest, IsEmptyIfTheEngineAnswersInAnotherForm) {
    engine_.settings = {{"CPU_THREADS_NUM", std::string("many")}, {"CPU_THROUGHPUT_STREAMS", 7.5}};
    engine_.metrics = {{{"CPU", "FULL_DEVICE_NAME"}, 86},
                       {{"CPU", "OPTIMIZATION_CAPABILITIES"}, std::string("FP32")}};
    const EngineInfo reported = info();
    EXPECT_EQ(reported.deviceName, "");
    EXPECT_EQ(reported.threads, 0);
    EXPECT_EQ(reported.streams, 0);
    EXPECT_THAT(reported.capabilities, IsEmpty());
}

TEST_F(EngineInfoTest, TheClientsQueryFailsIfTheEngineLoadsNothing) {
    const auto failure = [] {
        EngineInfo info;
        return QuavinClient::getEngineInfo(info);
    };
    engine_.loading = {InferenceEngine::GENERAL_ERROR, "no such device"};
    EXPECT_THAT(failure(), IsStatus(FAILURE, "no such device"));
    engine_.reading = {InferenceEngine::GENERAL_ERROR, "no such layer"};
    EXPECT_THAT(failure(), IsStatus(FAILURE, "no such layer"));
    engine_.hasReader = false;
    EXPECT_THAT(failure(), IsStatusWith(FAILURE, ::testing::Not(IsEmpty())));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
