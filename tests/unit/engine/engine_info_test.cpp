// What engines of different years tell about themselves, and what they refuse to tell.

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
        EngineInfo told;
        EXPECT_THAT(model_->getEngineInfo(told), IsOk());
        return told;
    }
    std::string precision() { return info().precision.str(); }
};

TEST_F(EngineInfoTest, IsWhatTheEngineTells) {
    static constexpr InferenceEngine::Version kVersion = {{2, 1}, "a build", "an engine"};
    engine_.version = &kVersion;
    engine_.metrics = {
        {{"CPU", "FULL_DEVICE_NAME"}, std::string("a processor")},
        {{"CPU", "OPTIMIZATION_CAPABILITIES"}, std::vector<std::string>{"FP32", "INT8"}}};
    engine_.settings = {{"CPU_THREADS_NUM", std::string("12")},
                        {"CPU_THROUGHPUT_STREAMS", std::string("3")},
                        {"INFERENCE_PRECISION_HINT", std::string("f16")}};
    for (const EngineInfo& told : {info(), internal::openVinoEngineInfo()}) {
        EXPECT_EQ(told.runtimeVersion, "a build");
        EXPECT_EQ(told.device, "CPU");
        EXPECT_EQ(told.deviceName, "a processor");
        EXPECT_EQ(told.precision, "f16");
        EXPECT_EQ(told.threads, 12);
        EXPECT_EQ(told.streams, 3);
        EXPECT_THAT(told.capabilities, ElementsAre("FP32", "INT8"));
    }
}

TEST_F(EngineInfoTest, TakesWhatEnginesOf2020TellAboutBfloat16) {
    EXPECT_EQ(precision(), "");
    engine_.settings["ENFORCE_BF16"] = std::string("NO");
    EXPECT_EQ(precision(), "f32");
    engine_.settings["ENFORCE_BF16"] = std::string("YES");
    EXPECT_EQ(precision(), "bf16");
    engine_.settings["INFERENCE_PRECISION_HINT"] = std::string("f32");
    EXPECT_EQ(precision(), "f32");
}

TEST_F(EngineInfoTest, IsEmptyWhereAnEngineRefusesAndTheModelIsLoadedAllTheSame) {
    for (const bool throwsNumbers : {false, true}) {
        engine_.throwsNumbers = throwsNumbers;
        const EngineInfo told = info();
        EXPECT_EQ(told.runtimeVersion, "");
        EXPECT_EQ(told.device, "CPU");
        EXPECT_EQ(told.deviceName, "");
        EXPECT_EQ(told.precision, "");
        EXPECT_EQ(told.threads, 0);
        EXPECT_EQ(told.streams, 0);
        EXPECT_THAT(told.capabilities, IsEmpty());
    }
}

TEST_F(EngineInfoTest, IsEmptyWhereAnEngineTellsInAnotherForm) {
    engine_.settings = {{"CPU_THREADS_NUM", std::string("many")}, {"CPU_THROUGHPUT_STREAMS", 7.5}};
    engine_.metrics = {{{"CPU", "FULL_DEVICE_NAME"}, 86},
                       {{"CPU", "OPTIMIZATION_CAPABILITIES"}, std::string("FP32")}};
    const EngineInfo told = info();
    EXPECT_EQ(told.deviceName, "");
    EXPECT_EQ(told.threads, 0);
    EXPECT_EQ(told.streams, 0);
    EXPECT_THAT(told.capabilities, IsEmpty());
}

TEST_F(EngineInfoTest, OfTheClientFailsWhereTheEngineLoadsNothing) {
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
