// Inference on an engine that fails, or that records what it was asked for.

#include <array>
#include <stdexcept>

#include "faulty_model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using InferenceEngine::Precision;
using InferenceEngine::TensorDesc;
using ::testing::ElementsAre;

constexpr const char* kFrameworkText = "Unknown/internal exception happened.";

class FaultyInference : public FaultyModelTest {
protected:
    FaultyInference() { loadWithInput(); }

    void expectFrameworkFailure() {
        expectThrows<MLFrameworkException>([&] { predict(); }, ML_FRAMEWORK_ERROR, kFrameworkText);
        EXPECT_TRUE(outputs_.empty());
    }
    void expectNoInference() {
        EXPECT_EQ(engine_.inferences, 0);
        EXPECT_TRUE(engine_.boundNames.empty());
        EXPECT_TRUE(outputs_.empty());
    }
    // Inputs "a" and "b", outputs "o" and "p".
    void widenTheNetwork() {
        const TensorDesc fourFloats(Precision::FP32, {1, 4}, InferenceEngine::NC);
        engine_.inputs.clear();
        engine_.outputs.clear();
        engine_.addInput("b", fourFloats);
        engine_.addInput("a", fourFloats);
        engine_.addOutput("p", fourFloats);
        engine_.addOutput("o", fourFloats);
        text_.inputs = {tensorFeature("b", {1, 4}, "float"), tensorFeature("a", {1, 4}, "float")};
        text_.outputs = {tensorFeature("p", {1, 4}, "float"), tensorFeature("o", {1, 4}, "float")};
        ASSERT_THAT(load(), IsOk());
        inputs_.clear();
        ASSERT_THAT(model_->allocateInputs(inputs_), IsOk());
    }
};

TEST_F(FaultyInference, BindsEveryInputThenEveryOutputInNameOrderAndInfersOnce) {
    widenTheNetwork();
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(engine_.boundNames, ElementsAre("a", "b", "o", "p"));
    EXPECT_EQ(engine_.inferences, 1);
}

TEST_F(FaultyInference, TheEngineReadsTheHostsOwnMemory) {
    std::array<float, 4> samples = {1, 2, 3, 4};
    auto* const bytes = reinterpret_cast<unsigned char*>(samples.data());
    inputs_ = {featureOver("x", {1, 4}, DataType::FLOAT,
                           std::make_shared<BufferWrappedTensor>(DataType::FLOAT, TensorShape{1, 4},
                                                                 bytes, sizeof samples))};
    ASSERT_THAT(predict(), IsOk());
    EXPECT_EQ(engine_.bound.at("x")->buffer().as<void*>(), samples.data());
}

TEST_F(FaultyInference, TheEngineWritesToTheOutputsMemory) {
    const void* written = nullptr;
    engine_.onInfer = [&](const InferenceEngine::BlobMap& blobs) {
        auto* const values = blobs.at("y")->buffer().as<float*>();
        values[0] = 7;
        values[3] = 9;
        written = values;
    };
    ASSERT_THAT(predict(), IsOk());
    const auto tensor = outputs_.at(0)->asTensor();
    EXPECT_EQ(tensor->buffer(), written);
    EXPECT_EQ(reinterpret_cast<const float*>(tensor->buffer())[0], 7);
    EXPECT_EQ(reinterpret_cast<const float*>(tensor->buffer())[3], 9);
}

TEST_F(FaultyInference, InputBlobsHaveTheNetworksDimensionsAndTheFeaturesPrecision) {
    inputs_ = {featureOf<std::int16_t>("x", {2, 2}, DataType::INT16, {1, 2, 3, 4})};
    ASSERT_THAT(predict(), IsOk());
    const TensorDesc& description = engine_.bound.at("x")->getTensorDesc();
    EXPECT_EQ(description.getPrecision(), Precision::I16);
    EXPECT_EQ(description.getDims(), (InferenceEngine::SizeVector{1, 4}));
    EXPECT_EQ(description.getLayout(), InferenceEngine::NC);
    EXPECT_EQ(engine_.inputs.at("x")->getPrecision(), Precision::I16);
}

TEST_F(FaultyInference, OutputBlobsHaveTheNetworksPrecisionAndDimensionsAndAnyLayout) {
    const auto expectOutput = [&](Precision precision, DataType type) {
        engine_.addOutput("y", TensorDesc(precision, {2, 3}, InferenceEngine::NC));
        ASSERT_THAT(load(), IsOk());
        outputs_.clear();
        ASSERT_THAT(predict(), IsOk());
        const TensorDesc& description = engine_.bound.at("y")->getTensorDesc();
        EXPECT_EQ(description.getPrecision(), precision);
        EXPECT_EQ(description.getDims(), (InferenceEngine::SizeVector{2, 3}));
        EXPECT_EQ(description.getLayout(), InferenceEngine::ANY);
        EXPECT_EQ(outputs_.at(0)->asTensor()->dataType(), type);
        EXPECT_EQ(outputs_.at(0)->asTensor()->shape().shapeVector(), (std::vector<int64>{2, 3}));
    };
    expectOutput(Precision::FP32, DataType::FLOAT);
    expectOutput(Precision::I8, DataType::INT8);
    expectOutput(Precision::I16, DataType::INT16);
    expectOutput(Precision::I32, DataType::INT32);
}

TEST_F(FaultyInference, EveryCallHasItsOwnOutputBlobs) {
    ASSERT_THAT(predict(), IsOk());
    const auto first = engine_.bound.at("y");
    ASSERT_THAT(predict(), IsOk());
    EXPECT_NE(engine_.bound.at("y"), first);
    EXPECT_NE(outputs_.at(0)->asTensor()->buffer(), outputs_.at(1)->asTensor()->buffer());
}

// This engine holds its blobs until the next ones are bound, as the 2020 releases do.
TEST_F(FaultyInference, MemoryStillHeldByTheEngineIsReusedOneCallLater) {
    const auto addressOfOutput = [&] {
        outputs_.clear();
        EXPECT_THAT(predict(), IsOk());
        return outputs_.at(0)->asTensor()->buffer();
    };
    const auto* const first = addressOfOutput();
    const auto* const second = addressOfOutput();
    EXPECT_NE(second, first);
    EXPECT_EQ(addressOfOutput(), first);
    EXPECT_EQ(addressOfOutput(), second);
}

TEST_F(FaultyInference, ANullOutputThrowsALogicErrorBeforeInference) {
    engine_.outputs.at("y") = nullptr;
    ASSERT_THAT(load(), IsOk());
    try {
        predict();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::logic_error& error) {
        EXPECT_EQ(typeid(error), typeid(std::logic_error));
        EXPECT_STREQ(error.what(), "output data pointer is not valid");
    }
    expectNoInference();
}

TEST_F(FaultyInference, AnOutputOfUnsupportedPrecisionThrowsInvalidTypeBeforeInference) {
    for (const Precision precision : {Precision(Precision::U8), Precision(Precision::FP16),
                                      Precision(Precision::I64), Precision()}) {
        engine_.addOutput("y", TensorDesc(precision, {1, 4}, InferenceEngine::NC));
        ASSERT_THAT(load(), IsOk());
        expectThrows<InvalidTypeException>(
            [&] { predict(); }, INVALID_TYPE,
            "Openvino only supports float, int8, int16, int32 output datatypes");
        expectNoInference();
    }
}

TEST_F(FaultyInference, AnInputWithoutDataThrowsTheEnginesText) {
    engine_.inputs.at("x") = std::make_shared<InferenceEngine::InputInfo>();
    ASSERT_THAT(load(), IsOk());
    try {
        predict();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Exception& exception) {
        ADD_FAILURE() << "converted: " << exception.what();
    } catch (const std::exception& exception) {
        EXPECT_STREQ(exception.what(), "Data is empty!");
    }
    expectNoInference();
}

TEST_F(FaultyInference, ANetworkWithoutOutputsAnswers2AfterInference) {
    engine_.outputs.clear();
    ASSERT_THAT(load(), IsOk());
    EXPECT_THAT(predict(), IsStatus(FAILURE, "Output info absent in model"));
    EXPECT_EQ(engine_.inferences, 1);
    EXPECT_TRUE(outputs_.empty());
}

TEST_F(FaultyInference, AnOutputMissingFromTheNetworkIsRefusedBeforeInference) {
    text_.outputs.push_back(tensorFeature("z", {1, 4}, "float"));
    ASSERT_THAT(load(), IsOk());
    EXPECT_THAT(predict(), IsStatusWith(MODEL_METADATA_ERROR, ::testing::HasSubstr("\"z\"")));
    expectNoInference();
}

TEST_F(FaultyInference, AMissingFeatureIsReportedBeforeInference) {
    inputs_.clear();
    EXPECT_THAT(predict(), IsStatus(EMPTY_INPUT_DESCRIPTOR, "Empty Input Feature Descriptor"));
    expectNoInference();
}

TEST_F(FaultyInference, AStridedInputIsRefusedBeforeInference) {
    class Strided : public Tensor {
    public:
        using Tensor::Tensor;
        TensorShape stride() const override { return {8, 2}; }
    };
    inputs_ = {featureOver("x", {1, 4}, DataType::FLOAT,
                           std::make_shared<Strided>(DataType::FLOAT, TensorShape{1, 4}))};
    expectThrows<MLFrameworkException>([&] { predict(); }, ML_FRAMEWORK_ERROR,
                                       "OpenVino: Invalid use of strided tensor");
    expectNoInference();
}

TEST_F(FaultyInference, AnInputWithoutEnoughMemoryIsRefusedBeforeInference) {
    inputs_ = {featureOf<float>("x", {1, 3}, DataType::FLOAT, {1, 2, 3})};
    EXPECT_THROW(predict(), InvalidArgumentsException);
    expectNoInference();
}

TEST_F(FaultyInference, AFailureToBindAnInputIsAFrameworkFailureBeforeInference) {
    engine_.binding["x"] = {InferenceEngine::PARAMETER_MISMATCH, "a text that stays inside"};
    expectFrameworkFailure();
    EXPECT_EQ(engine_.inferences, 0);
}

TEST_F(FaultyInference, AFailureToBindAnOutputIsAFrameworkFailureBeforeInference) {
    engine_.binding["y"] = {InferenceEngine::NOT_FOUND, "a text that stays inside"};
    expectFrameworkFailure();
    EXPECT_EQ(engine_.inferences, 0);
}

TEST_F(FaultyInference, AFailureToInferIsAFrameworkFailure) {
    engine_.inferring = {InferenceEngine::GENERAL_ERROR, "a text that stays inside"};
    expectFrameworkFailure();
    EXPECT_EQ(engine_.inferences, 1);
}

TEST_F(FaultyInference, ANonStandardExceptionIsAFrameworkFailureToo) {
    engine_.throwsNumbers = true;
    engine_.inferring.status = InferenceEngine::GENERAL_ERROR;
    expectFrameworkFailure();
    engine_.binding["x"].status = InferenceEngine::GENERAL_ERROR;
    expectFrameworkFailure();
}

TEST_F(FaultyInference, PredictionSucceedsAgainAfterAFailure) {
    engine_.inferring.status = InferenceEngine::GENERAL_ERROR;
    expectFrameworkFailure();
    engine_.inferring.status = InferenceEngine::OK;
    EXPECT_THAT(predict(), IsOk());
    EXPECT_EQ(outputs_.size(), 1U);
}

TEST_F(FaultyInference, ExistingOutputsRemainIfPredictionFails) {
    outputs_ = {nullptr};
    engine_.inferring.status = InferenceEngine::GENERAL_ERROR;
    EXPECT_THROW(predict(), MLFrameworkException);
    EXPECT_EQ(outputs_.size(), 1U);
}

TEST_F(FaultyInference, AnUnloadedModelAnswers11WithoutCallingTheEngine) {
    ASSERT_THAT(model_->unloadImpl(), IsOk());
    EXPECT_THAT(predict(), IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    expectNoInference();
}

TEST_F(FaultyInference, ANeverLoadedModelAnswers11) {
    const OpenModel model("m", Device());
    EXPECT_THAT(model.predict(inputs_, outputs_),
                IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    expectNoInference();
}

}  // namespace
}  // namespace VelmoraQuavin::testing
