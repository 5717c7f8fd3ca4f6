// Ports and predictions from C.

#include "integration/c/c_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::StrEq;

using Floats = std::vector<float>;

class CPredict : public CInterface {
protected:
    quavin_status predict(const std::vector<const void*>& inputs,
                          const std::vector<std::size_t>& sizes) {
        quavin_outputs_release(outputs_);
        return quavin_predict(model_, inputs.data(), sizes.data(), inputs.size(), &outputs_);
    }
    ~CPredict() override { EXPECT_THAT(quavin_outputs_release(outputs_), Succeeds()); }

    // The arithmetic network, with a package that names its ports in an order of its own.
    void loadArithmetic() {
        const IrNetwork network = arithmeticNetwork();
        PackageText text = describe(network);
        std::swap(text.inputs.at(0), text.inputs.at(1));    // right, left
        std::swap(text.outputs.at(0), text.outputs.at(2));  // product, difference, sum
        writeNetwork(directory_, network);
        writeManifest(directory_, text);
        ASSERT_THAT(load(), Succeeds());
    }

    const Floats x_ = {1, 2, 3, -4};
    quavin_outputs* outputs_ = nullptr;
};

TEST_F(CPredict, PortsAreInThePackagesOrder) {
    loadArithmetic();
    std::size_t count = 0;
    ASSERT_THAT(quavin_model_get_input_count(model_, &count), Succeeds());
    ASSERT_EQ(count, 2U);
    EXPECT_STREQ(inputOf(model_, 0).name, "right");
    EXPECT_STREQ(inputOf(model_, 1).name, "left");
    ASSERT_THAT(quavin_model_get_output_count(model_, &count), Succeeds());
    ASSERT_EQ(count, 3U);
    EXPECT_STREQ(outputOf(model_, 0).name, "product");
    EXPECT_STREQ(outputOf(model_, 1).name, "difference");
    EXPECT_STREQ(outputOf(model_, 2).name, "sum");
}

TEST_F(CPredict, InputsAndOutputsAreInThePackagesOrder) {
    loadArithmetic();
    const Floats right = {2, 3};
    const Floats left = {10, 20};
    ASSERT_THAT(predict({right.data(), left.data()}, {8, 8}), Succeeds());
    EXPECT_THAT(floatsOf(outputs_, 0), ElementsAre(20.F, 60.F));
    EXPECT_THAT(floatsOf(outputs_, 1), ElementsAre(8.F, 17.F));
    EXPECT_THAT(floatsOf(outputs_, 2), ElementsAre(12.F, 23.F));
}

TEST_F(CPredict, APortTellsWhatThePackageDeclares) {
    ASSERT_THAT(quavin_load_directory(QUAVIN_DIGITS_PACKAGE, nullptr, &model_), Succeeds());
    const quavin_port port = inputOf(model_, 0);
    EXPECT_STREQ(port.name, "image");
    EXPECT_STREQ(port.description, "grey levels row by row, 0 (paper) to 16 (ink)");
    EXPECT_THAT(dimsOf(port), ElementsAre(1, 1, 8, 8));
    EXPECT_EQ(port.bytes, 256U);
    EXPECT_EQ(port.kind, QUAVIN_FEATURE_TENSOR);
    EXPECT_EQ(port.element_type, QUAVIN_TYPE_FLOAT);
    EXPECT_EQ(port.required, 1);
    EXPECT_EQ(port.reserved, 0);
}

TEST_F(CPredict, TheMetadataTellTheModelsIdentity) {
    ASSERT_THAT(quavin_load_directory(QUAVIN_DIGITS_PACKAGE, nullptr, &model_), Succeeds());
    quavin_metadata metadata = QUAVIN_METADATA_INIT;
    ASSERT_THAT(quavin_model_get_metadata(model_, &metadata), Succeeds());
    EXPECT_STREQ(metadata.id, "digits-8x8");
    EXPECT_STREQ(metadata.name, "Handwritten digits");
    EXPECT_STREQ(metadata.author, "quavin_on_device_sdk examples");
    EXPECT_STREQ(metadata.description, "Recognises a handwritten digit in a picture of 8x8 pixels");
    EXPECT_STREQ(metadata.sdk_version, "1.0");
    EXPECT_EQ(metadata.version, 1);
}

TEST_F(CPredict, AnIndexPastTheEndIsOutOfRange) {
    ASSERT_THAT(loadNetwork(affineNetwork()), Succeeds());
    const auto refused = FailsWith(QUAVIN_OUT_OF_RANGE, StrEq("There is no index 1 among 1"));
    quavin_port port = QUAVIN_PORT_INIT;
    EXPECT_THAT(quavin_model_get_input(model_, 1, &port), refused);
    EXPECT_THAT(quavin_model_get_output(model_, 1, &port), refused);
    EXPECT_EQ(port.name, nullptr);
    ASSERT_THAT(predict({x_.data()}, {16}), Succeeds());
    quavin_output output = QUAVIN_OUTPUT_INIT;
    EXPECT_THAT(quavin_outputs_get(outputs_, 1, &output), refused);
    EXPECT_EQ(output.data, nullptr);
}

TEST_F(CPredict, AnOutputTellsItsNameShapeAndType) {
    ASSERT_THAT(loadNetwork(affineNetwork()), Succeeds());
    ASSERT_THAT(predict({x_.data()}, {16}), Succeeds());
    std::size_t count = 0;
    ASSERT_THAT(quavin_outputs_get_count(outputs_, &count), Succeeds());
    EXPECT_EQ(count, 1U);
    quavin_output output = QUAVIN_OUTPUT_INIT;
    ASSERT_THAT(quavin_outputs_get(outputs_, 0, &output), Succeeds());
    EXPECT_STREQ(output.name, "y");
    EXPECT_EQ(output.bytes, 16U);
    EXPECT_EQ((std::vector<std::int64_t>{output.dims, output.dims + output.rank}),
              (std::vector<std::int64_t>{1, 4}));
    EXPECT_EQ(output.element_type, QUAVIN_TYPE_FLOAT);
}

TEST_F(CPredict, OutputsOutliveTheModelAndLaterPredictions) {
    ASSERT_THAT(loadNetwork(affineNetwork()), Succeeds());
    ASSERT_THAT(predict({x_.data()}, {16}), Succeeds());
    quavin_output output = QUAVIN_OUTPUT_INIT;
    ASSERT_THAT(quavin_outputs_get(outputs_, 0, &output), Succeeds());
    EXPECT_THAT(predictFloats(model_, {0, 0, 0, 0}), ElementsAre(0.5F, 1.F, 1.5F, 2.F));
    release(model_);
    const auto* const values = static_cast<const float*>(output.data);
    EXPECT_THAT(Floats(values, values + 4), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
    EXPECT_STREQ(output.name, "y");
    EXPECT_THAT(floatsOf(outputs_, 0), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
}

TEST_F(CPredict, OutputsMemoryIsTheSameInEveryAnswer) {
    ASSERT_THAT(loadNetwork(affineNetwork()), Succeeds());
    ASSERT_THAT(predict({x_.data()}, {16}), Succeeds());
    quavin_output first = QUAVIN_OUTPUT_INIT;
    quavin_output second = QUAVIN_OUTPUT_INIT;
    ASSERT_THAT(quavin_outputs_get(outputs_, 0, &first), Succeeds());
    ASSERT_THAT(quavin_outputs_get(outputs_, 0, &second), Succeeds());
    EXPECT_EQ(first.data, second.data);
    EXPECT_EQ(first.dims, second.dims);
}

TEST_F(CPredict, AnInputOfAnotherSizeIsRefused) {
    ASSERT_THAT(loadNetwork(affineNetwork()), Succeeds());
    for (const std::size_t size : {0U, 12U, 15U, 17U, 20U, 32U}) {
        EXPECT_THAT(
            predict({x_.data()}, {size}),
            FailsWith(QUAVIN_INVALID_ARGUMENTS,
                      StrEq("Input \"x\" needs 16 bytes and was given " + std::to_string(size))));
        EXPECT_EQ(outputs_, nullptr);
    }
    EXPECT_THAT(predict({x_.data()}, {16}), Succeeds());
}

TEST_F(CPredict, AWrongNumberOfInputsIsRefused) {
    ASSERT_THAT(loadNetwork(affineNetwork()), Succeeds());
    EXPECT_THAT(predict({}, {}), FailsWith(QUAVIN_INVALID_ARGUMENTS,
                                           StrEq("The model has 1 inputs and was given 0")));
    EXPECT_THAT(
        predict({x_.data(), x_.data()}, {16, 16}),
        FailsWith(QUAVIN_INVALID_ARGUMENTS, StrEq("The model has 1 inputs and was given 2")));
}

TEST_F(CPredict, AnInputThatIsLeftOutIsMissed) {
    ASSERT_THAT(loadNetwork(affineNetwork()), Succeeds());
    EXPECT_THAT(predict({nullptr}, {0}),
                FailsWith(QUAVIN_EMPTY_INPUT_DESCRIPTOR, StrEq("Empty Input Feature Descriptor")));
    EXPECT_THAT(predict({nullptr}, {16}),
                FailsWith(QUAVIN_INVALID_ARGUMENTS, StrEq("Input \"x\" is null")));
    EXPECT_THAT(predict({x_.data()}, {16}), Succeeds());
}

TEST_F(CPredict, AnInputThatIsNoTensorCanOnlyBeLeftOut) {
    const IrNetwork network = affineNetwork();
    PackageText text = describe(network);
    text.inputs.push_back(scalarFeature("flag", "int64"));
    writeNetwork(directory_, network);
    writeManifest(directory_, text);
    ASSERT_THAT(load(), Succeeds());
    const quavin_port port = inputOf(model_, 1);
    EXPECT_EQ(port.kind, QUAVIN_FEATURE_INT64);
    EXPECT_EQ(port.bytes, 0U);
    EXPECT_EQ(port.rank, 0U);
    EXPECT_THAT(predict({x_.data(), x_.data()}, {16, 8}),
                FailsWith(QUAVIN_INVALID_TYPE,
                          StrEq("Input \"flag\" is of the type int64, and only tensors can be "
                                "given")));
    ASSERT_THAT(predict({x_.data(), nullptr}, {16, 0}), Succeeds());
    EXPECT_THAT(floatsOf(outputs_, 0), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
}

TEST_F(CPredict, AnInputOfVariableShapeTakesWhatTheNetworkReads) {
    const IrNetwork network = arithmeticNetwork();
    PackageText text = describe(network);
    text.inputs.at(1) = tensorFeature("right", {-1, 2}, "float");
    writeNetwork(directory_, network);
    writeManifest(directory_, text);
    ASSERT_THAT(load(), Succeeds());
    const quavin_port port = inputOf(model_, 1);
    EXPECT_THAT(dimsOf(port), ElementsAre(-1, 2));
    EXPECT_EQ(port.bytes, 0U);
    const Floats left = {10, 20};
    const Floats right = {2, 3, 4};
    ASSERT_THAT(predict({left.data(), right.data()}, {8, 8}), Succeeds());
    EXPECT_THAT(floatsOf(outputs_, 0), ElementsAre(12.F, 23.F));
    ASSERT_THAT(predict({left.data(), right.data()}, {8, 12}), Succeeds());
    EXPECT_THAT(floatsOf(outputs_, 0), ElementsAre(12.F, 23.F));
    EXPECT_THAT(predict({left.data(), right.data()}, {8, 4}),
                FailsWith(QUAVIN_INVALID_ARGUMENTS,
                          StrEq("Input \"right\" needs 8 bytes and was given 4")));
    EXPECT_THAT(predict({left.data(), right.data()}, {8, 7}),
                FailsWith(QUAVIN_INVALID_ARGUMENTS,
                          StrEq("Input \"right\" needs a multiple of 4 bytes and was given 7")));
}

TEST_F(CPredict, AScalarHasNoDimensions) {
    ASSERT_THAT(loadNetwork(scalarNetwork()), Succeeds());
    EXPECT_EQ(inputOf(model_, 0).rank, 0U);
    EXPECT_EQ(inputOf(model_, 0).bytes, 4U);
    EXPECT_THAT(predictFloats(model_, {2.5F}), ElementsAre(25.F));
}

TEST_F(CPredict, MoreThanTheNetworkReadsIsRefusedByThePackage) {
    // The package declares less than the network reads.
    const IrNetwork network = affineNetwork();
    PackageText text = describe(network);
    text.inputs = {tensorFeature("x", {1, 3}, "float")};
    writeNetwork(directory_, network);
    writeManifest(directory_, text);
    ASSERT_THAT(load(), Succeeds());
    EXPECT_THAT(
        predict({x_.data()}, {12}),
        FailsWith(QUAVIN_INVALID_ARGUMENTS, StrEq("Input \"x\" needs 16 bytes and was given 12")));
}

TEST_F(CPredict, AnInputIsReadInPlaceWhereverItLies) {
    ASSERT_THAT(loadNetwork(affineNetwork()), Succeeds());
    Floats samples = {9, 1, 2, 3, -4};
    ASSERT_THAT(predict({samples.data() + 1}, {16}), Succeeds());
    EXPECT_THAT(floatsOf(outputs_, 0), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
    samples = {9, 0, 0, 0, 0};
    ASSERT_THAT(predict({samples.data() + 1}, {16}), Succeeds());
    EXPECT_THAT(floatsOf(outputs_, 0), ElementsAre(0.5F, 1.F, 1.5F, 2.F));
}

TEST_F(CPredict, OutputsCanBeCopiedIntoTheCallersMemory) {
    loadArithmetic();
    const Floats right = {2, 3};
    const Floats left = {10, 20};
    const void* const inputs[] = {right.data(), left.data()};
    const std::size_t sizes[] = {8, 8, 8};
    std::array<float, 6> results{};
    void* const outputs[] = {&results[0], &results[2], &results[4]};
    ASSERT_THAT(quavin_predict_into(model_, inputs, sizes, 2, outputs, sizes, 3), Succeeds());
    EXPECT_THAT(results, ElementsAre(20.F, 60.F, 8.F, 17.F, 12.F, 23.F));
}

TEST_F(CPredict, NothingIsCopiedIfOneOutputHasAnotherSize) {
    loadArithmetic();
    const Floats x = {1, 2};
    const void* const inputs[] = {x.data(), x.data()};
    const std::size_t right[] = {8, 8};
    std::array<float, 6> results{7, 7, 7, 7, 7, 7};
    void* outputs[] = {&results[0], &results[2], &results[4]};
    for (const std::size_t size : {0U, 4U, 12U}) {
        const std::size_t sizes[] = {8, 8, size};
        EXPECT_THAT(
            quavin_predict_into(model_, inputs, right, 2, outputs, sizes, 3),
            FailsWith(QUAVIN_INVALID_ARGUMENTS,
                      StrEq("Output \"sum\" has 8 bytes and was given " + std::to_string(size))));
    }
    const std::size_t sizes[] = {8, 8, 8};
    outputs[2] = nullptr;
    EXPECT_THAT(
        quavin_predict_into(model_, inputs, right, 2, outputs, sizes, 3),
        FailsWith(QUAVIN_INVALID_ARGUMENTS, StrEq("Output \"sum\" has 8 bytes and was given 0")));
    EXPECT_THAT(
        quavin_predict_into(model_, inputs, right, 2, outputs, sizes, 2),
        FailsWith(QUAVIN_INVALID_ARGUMENTS, StrEq("The model has 3 outputs and was given 2")));
    EXPECT_THAT(results, ::testing::Each(7.F));
}

TEST_F(CPredict, FailuresOfTheEngineReachTheHost) {
    // bool is a type of the manifest that the engine does not take.
    const IrNetwork network = affineNetwork();
    PackageText text = describe(network);
    text.inputs = {tensorFeature("x", {1, 4}, "bool")};
    writeNetwork(directory_, network);
    writeManifest(directory_, text);
    ASSERT_THAT(load(), Succeeds());
    EXPECT_EQ(inputOf(model_, 0).bytes, 4U);
    EXPECT_EQ(predict({x_.data()}, {4}), QUAVIN_INVALID_TENSOR_DATA_TYPE);
    EXPECT_EQ(outputs_, nullptr);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
