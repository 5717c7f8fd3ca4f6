// Engine options as a host sets them, and what the runtime then reports.

#include <gmock/gmock.h>

#include <algorithm>

#include "integration/get_model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::Each;
using ::testing::FloatEq;
using ::testing::Ge;
using Precision = EngineOptions::Precision;
using Hint = EngineOptions::Hint;

bool has(const EngineInfo& info, const char* capability) {
    return std::find(info.capabilities.begin(), info.capabilities.end(), String(capability)) !=
           info.capabilities.end();
}

EngineInfo infoOf(const QuavinModel& model) {
    EngineInfo info;
    EXPECT_THAT(model.getEngineInfo(info), IsOk());
    return info;
}

EngineOptions oneThread() {
    EngineOptions options;
    options.threads = 1;
    return options;
}

class EngineOptionsOfALoad : public GetModel {
protected:
    EngineInfo loadedWith(const EngineOptions& options) {
        EXPECT_THAT(
            client_.getModel(directory_.text(), model_, 0, QuavinModelType::Openvino, options),
            IsOk());
        return infoOf(*model_);
    }
    void expectRefused(const EngineOptions& options, const std::string& text) {
        const auto type = QuavinModelType::Openvino;
        const auto metadata = readManifest();
        const auto refused = IsStatus(INVALID_ARGUMENTS, text);
        model_ = other_;
        EXPECT_THAT(client_.getModel(directory_.text(), model_, 0, type, options), refused);
        EXPECT_THAT(client_.getModel(directory_.text(), model_, Device(), 0, options), refused);
        EXPECT_THAT(client_.getModel(utf16(directory_), model_, 0, type, options), refused);
        EXPECT_THAT(client_.getModel(utf16(directory_), model_, Device(), 0, options), refused);
        EXPECT_THAT(client_.getModel(metadata, model_, Device(), options), refused);
        EXPECT_THAT(client_.getModel(metadata, model_, type, options), refused);
        EXPECT_EQ(model_, other_);
        EXPECT_EQ(registeredModels(), 0U);
    }
};

#ifdef QUAVIN_ENGINE_IS_ADAPTER  // other engines need not report their settings

TEST_F(EngineOptionsOfALoad, EveryOverloadTakesThem) {
    const EngineOptions options = oneThread();
    const auto type = QuavinModelType::Openvino;
    const auto metadata = readManifest();
    const auto expectOneThread = [&](const QuavinStatus& status) {
        EXPECT_THAT(status, IsOk());
        ASSERT_NE(model_, nullptr);
        EXPECT_EQ(infoOf(*model_).threads, 1);
        model_.reset();
    };
    expectOneThread(client_.getModel(directory_.text(), model_, 0, type, options));
    expectOneThread(client_.getModel(directory_.text(), model_, Device(), 0, options));
    EXPECT_EQ(registeredModels(), 1U);
    expectOneThread(client_.getModel(utf16(directory_), model_, 0, type, options));
    expectOneThread(client_.getModel(utf16(directory_), model_, Device(), 0, options));
    EXPECT_EQ(registeredModels(), 2U);
    expectOneThread(client_.getModel(metadata, model_, type, options));
    EXPECT_EQ(registeredModels(), 2U);
    expectOneThread(client_.getModel(metadata, model_, Device(), options));
    EXPECT_EQ(registeredModels(), 3U);
}

TEST_F(EngineOptionsOfALoad, FastestPrecisionIsTheOneTheProcessorHas) {
    EngineOptions options;
    options.precision = Precision::Fastest;
    const EngineInfo info = loadedWith(options);
    EXPECT_EQ(info.precision, has(info, "BF16") ? "bf16" : has(info, "FP16") ? "f16" : "f32");
}

TEST_F(EngineOptionsOfALoad, OneModelsPrecisionIsNotAnothers) {
    EngineOptions fastest;
    fastest.precision = Precision::Fastest;
    loadedWith(fastest);
    const auto first = model_;
    const std::string chosen = infoOf(*first).precision.str();
    EXPECT_EQ(loadedWith(EngineOptions()).precision, "f32");
    EXPECT_EQ(infoOf(*first).precision, chosen);
}

TEST_F(EngineOptionsOfALoad, ThroughputGivesTheModelMoreStreams) {
    const EngineInfo usual = loadedWith(EngineOptions());
    EXPECT_EQ(usual.streams, 1);
    EngineOptions options;
    options.hint = Hint::Throughput;
    const EngineInfo info = loadedWith(options);
    if (usual.threads > 1) {
        EXPECT_GT(info.streams, 1);
    }
    options.threads = 1;
    EXPECT_EQ(loadedWith(options).streams, 1);
}

#endif

TEST_F(EngineOptionsOfALoad, ThoseWithoutAMeaningAreRefusedAndKeepThePointer) {
    EngineOptions options;
    options.threads = -4;
    expectRefused(options, "EngineOptions::threads is -4, but must be from 0 to 1024");
    options = EngineOptions();
    options.precision = static_cast<Precision>(7);
    expectRefused(options, "EngineOptions::precision is 7, but must be Single (0) or Fastest (1)");
    options = EngineOptions();
    options.hint = static_cast<Hint>(7);
    expectRefused(options, "EngineOptions::hint is 7, but must be Latency (0) or Throughput (1)");
}

TEST_F(EngineOptionsOfALoad, ThePathIsCheckedFirst) {
    EngineOptions options;
    options.threads = -4;
    EXPECT_THAT(client_.getModel("", model_, 0, QuavinModelType::Openvino, options),
                IsStatus(INVALID_MODEL_PATH, "modelpath specified is empty"));
    EXPECT_THAT(client_.getModel(nullptr, model_, Device(), options),
                IsStatus(INVALID_ARGUMENTS, "There is no metadata to load a model from"));
}

TEST_F(EngineOptionsOfALoad, ASinglePrecisionModelComputesAsBeforeBesideAFasterOne) {
    writePackage(directory_, affineNetwork());
    EngineOptions fastest;
    fastest.precision = Precision::Fastest;
    loadedWith(fastest);
    const auto faster = model_;
    loadedWith(EngineOptions());
    Features inputs;
    Features outputs;
    ASSERT_THAT(model_->allocateInputs(inputs), IsOk());
    // Neither bfloat16 nor half precision can hold it.
    fill(inputs.at(0), std::vector<float>(4, 1.0001F));
    ASSERT_THAT(model_->predict(inputs, outputs), IsOk());
    EXPECT_FLOAT_EQ(valuesOf<float>(outputs.at(0)).at(0), 2 * 1.0001F + 0.5F);
}

QuavinConfig configWith(const EngineOptions& options) {
    QuavinConfig config;
    config.SetEngineOptions(options);
    return config;
}

TEST(EngineOptionsOfTheConfiguration, AreTheDefaultUntilSet) {
    QuavinConfig config;
    EXPECT_EQ(config.GetEngineOptions(), EngineOptions());
    config.SetEngineOptions(oneThread());
    EXPECT_EQ(config.GetEngineOptions(), oneThread());
    EXPECT_NE(config.GetEngineOptions(), EngineOptions());
}

class EngineOptionsOfTheClient : public ModelTest {
protected:
    EngineOptionsOfTheClient() : ModelTest(configWith(oneThread())) {}
};

#ifdef QUAVIN_ENGINE_IS_ADAPTER

TEST_F(EngineOptionsOfTheClient, HoldForLoadsWithoutTheirOwn) {
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    EXPECT_EQ(infoOf(*model_).threads, 1);
}

TEST_F(EngineOptionsOfTheClient, YieldToThoseOfALoad) {
    EngineInfo usual;
    QuavinClient::terminate();
    ASSERT_THAT(QuavinClient::getEngineInfo(usual), IsOk());
    ASSERT_THAT(QuavinClient::init(configWith(oneThread())), IsOk());
    writePackage(directory_, affineNetwork());
    ASSERT_THAT(
        client_.getModel(directory_.text(), model_, 0, QuavinModelType::Openvino, EngineOptions()),
        IsOk());
    EXPECT_EQ(infoOf(*model_).threads, usual.threads);
}

TEST_F(EngineOptionsOfTheClient, HoldForItsEngineInfo) {
    EngineInfo info;
    ASSERT_THAT(QuavinClient::getEngineInfo(info), IsOk());
    EXPECT_EQ(info.threads, 1);
}

#endif

TEST(EngineOptionsWithoutAMeaning, AreReportedByLoadsAndByTheEngineInfoNotByInit) {
    EngineOptions options;
    options.threads = 5000;
    const std::string text = "EngineOptions::threads is 5000, but must be from 0 to 1024";
    ASSERT_THAT(QuavinClient::init(configWith(options)), IsOk());
    TempDirectory directory;
    writePackage(directory, affineNetwork());
    std::shared_ptr<QuavinModel> model;
    EXPECT_THAT(
        QuavinClient::instance().getModel(directory.text(), model, 0, QuavinModelType::Openvino),
        IsStatus(INVALID_ARGUMENTS, text));
    EngineInfo info;
    info.device = "as it was";
    EXPECT_THAT(QuavinClient::getEngineInfo(info), IsStatus(INVALID_ARGUMENTS, text));
    EXPECT_EQ(info.device, "as it was");
    QuavinClient::terminate();
}

// Calls that compiled before there were overloads with options and for memory; none may become
// ambiguous.
TEST_F(GetModel, CallsWithBracesAndLiteralsStillCompile) {
    EXPECT_THAT(client_.getModel(directory_.text(), model_, {}, QuavinModelType::Openvino), IsOk());
    EXPECT_THAT(client_.getModel(directory_.text(), model_, 0, {}), IsOk());
    EXPECT_THAT(client_.getModel("nowhere", model_, {}, 0),
                IsStatusWith(MODEL_METADATA_ERROR, ::testing::_));
    EXPECT_THAT(client_.getModel(u"nowhere", model_, 0, QuavinModelType::Openvino),
                IsStatusWith(MODEL_METADATA_ERROR, ::testing::_));
    EXPECT_THAT(client_.getModel(nullptr, model_, Device()),
                IsStatusWith(INVALID_ARGUMENTS, ::testing::_));
    EXPECT_THAT(client_.getModel(nullptr, model_, QuavinModelType::Openvino),
                IsStatusWith(INVALID_ARGUMENTS, ::testing::_));
    EXPECT_THAT(client_.getModel({}, model_, Device()),
                IsStatusWith(INVALID_ARGUMENTS, ::testing::_));
    EXPECT_THAT(client_.getModel(directory_.text(), model_, {}, {}, EngineOptions()), IsOk());
    EXPECT_THAT(client_.getModel("nowhere", model_, 0, QuavinModelType::Openvino, {}),
                IsStatusWith(MODEL_METADATA_ERROR, ::testing::_));
    EXPECT_THAT(client_.getModel("nowhere", model_, Device(), 0, {}),
                IsStatusWith(MODEL_METADATA_ERROR, ::testing::_));
    EXPECT_THAT(client_.getModel(nullptr, model_, Device(), EngineOptions()),
                IsStatusWith(INVALID_ARGUMENTS, ::testing::_));
}

TEST_F(GetModel, DescribingCallsWithBracesAndLiteralsStillCompile) {
    std::vector<ModelFeatureDescriptor> inputs;
    std::vector<ModelFeatureDescriptor> outputs;
    const auto unreadable = IsStatusWith(FILE_ERROR, ::testing::_);
    EXPECT_THAT(describeNetwork("nowhere", "", inputs, outputs), unreadable);
    EXPECT_THAT(describeNetwork("nowhere", {}, inputs, outputs), unreadable);
    EXPECT_THAT(describeNetwork(String("nowhere"), Filepath(), inputs, outputs), unreadable);
    EXPECT_THAT(describeNetwork({}, inputs, outputs),
                IsStatusWith(MODEL_METADATA_ERROR, ::testing::_));
}

TEST_F(GetModel, CallsForMemoryTakeLiteralsNullAndBraces) {
    EXPECT_THAT(client_.getModel(nullptr, 0, {}, model_, QuavinModelType::Openvino, {}),
                IsStatusWith(INVALID_ARGUMENTS, ::testing::_));
    EXPECT_THAT(client_.getModel("no archive", 10, {}, model_, Device(), {}),
                IsStatusWith(INVALID_ARGUMENTS, ::testing::_));
    EXPECT_THAT(client_.getModelFromBuffers({}, {}, model_, QuavinModelType::Openvino, {}),
                IsStatusWith(MODEL_METADATA_ERROR, ::testing::_));
    EXPECT_THAT(client_.getModelFromBuffers({}, {}, model_, Device(), {}),
                IsStatusWith(MODEL_METADATA_ERROR, ::testing::_));
    std::vector<ModelFeatureDescriptor> ports;
    EXPECT_THAT(describeNetwork(nullptr, 0, {}, ports, ports),
                IsStatusWith(INVALID_ARGUMENTS, ::testing::_));
    EXPECT_THAT(describeNetworkFromBuffers({}, {}, ports, ports),
                IsStatusWith(MODEL_METADATA_ERROR, ::testing::_));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
