// The default precisions of inputs and outputs, and those they are set to.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "network_texts.hpp"
#include "network_under_test.hpp"
#include "support/ir_text.h"

namespace InferenceEngine {
namespace {

using testing::ElementsAre;
using VelmoraQuavin::testing::IrText;

template <class T>
constexpr Precision::ePrecision precisionOf() {
    if constexpr (std::is_same_v<T, float>) {
        return Precision::FP32;
    } else if constexpr (std::is_same_v<T, std::int32_t>) {
        return Precision::I32;
    } else if constexpr (std::is_same_v<T, std::int16_t>) {
        return Precision::I16;
    } else if constexpr (std::is_same_v<T, std::uint16_t>) {
        return Precision::U16;
    } else if constexpr (std::is_same_v<T, std::int8_t>) {
        return Precision::I8;
    } else {
        static_assert(std::is_same_v<T, std::uint8_t>);
        return Precision::U8;
    }
}

/** Runs a network with an input "x" of four elements and returns its output "y" of eight. */
template <class Out, class In>
std::vector<Out> run(InferRequest& request, const std::vector<In>& elements) {
    const Blob::Ptr output = blobOf<Out>(precisionOf<Out>(), {8}, {});
    request.SetBlob("x", blobOf<In>(precisionOf<In>(), {4}, elements));
    request.SetBlob("y", output);
    request.Infer();
    return elementsOf<Out>(output);
}

/** Checks the default precisions of a network of this type, and that it is loaded with them. */
template <class In, class Out>
void expectDefaults(const std::string& type, int version, const std::vector<In>& elements,
                    const std::vector<Out>& expected) {
    SCOPED_TRACE(type + ", version " + std::to_string(version));
    CNNNetwork network(readNetwork(repeatingNetwork(type, version)));
    EXPECT_STREQ(network.getInputsInfo().at("x")->getPrecision().name(),
                 Precision(precisionOf<In>()).name());
    EXPECT_STREQ(network.getOutputsInfo().at("y")->getPrecision().name(),
                 Precision(precisionOf<Out>()).name());
    EXPECT_EQ((run<Out, In>(*load(network), elements)), expected);
}

class DefaultPrecisionTest : public testing::TestWithParam<int> {};

TEST_P(DefaultPrecisionTest, FloatsAreReportedAsFP32) {
    for (const std::string type : {"f32", "f16", "bf16", "f64"}) {
        expectDefaults<float, float>(type, GetParam(), {1, -2, 0.5F, 96},
                                     {1, -2, 0.5F, 96, 1, -2, 0.5F, 96});
    }
}

TEST_P(DefaultPrecisionTest, WideIntegersAreReportedAsI32) {
    for (const std::string type : {"i32", "i64"}) {
        expectDefaults<std::int32_t, std::int32_t>(type, GetParam(), {1, -2, 3, 70000},
                                                   {1, -2, 3, 70000, 1, -2, 3, 70000});
    }
    for (const std::string type : {"u32", "u64"}) {
        expectDefaults<std::int32_t, std::int32_t>(type, GetParam(), {1, 2, 3, 70000},
                                                   {1, 2, 3, 70000, 1, 2, 3, 70000});
    }
}

TEST_P(DefaultPrecisionTest, NarrowIntegersAreReportedUnchangedOnInputsAndAsFP32OnOutputs) {
    expectDefaults<std::int8_t, float>("i8", GetParam(), {1, -2, 3, -128},
                                       {1, -2, 3, -128, 1, -2, 3, -128});
    expectDefaults<std::uint8_t, float>("u8", GetParam(), {1, 2, 3, 255},
                                        {1, 2, 3, 255, 1, 2, 3, 255});
    expectDefaults<std::int16_t, float>("i16", GetParam(), {1, -2, 3, -30000},
                                        {1, -2, 3, -30000, 1, -2, 3, -30000});
    expectDefaults<std::uint16_t, float>("u16", GetParam(), {1, 2, 3, 60000},
                                         {1, 2, 3, 60000, 1, 2, 3, 60000});
}

TEST_P(DefaultPrecisionTest, BooleansAreReportedAsU8OnInputsAndAsFP32OnOutputs) {
    expectDefaults<std::uint8_t, float>("boolean", GetParam(), {1, 0, 0, 1},
                                        {1, 0, 0, 1, 1, 0, 0, 1});
}

INSTANTIATE_TEST_SUITE_P(Versions, DefaultPrecisionTest, testing::Values(10, 11));

/** Sets both precisions of a float network before it is loaded. */
template <class In, class Out>
void expectSettable(const std::vector<In>& elements, const std::vector<Out>& expected) {
    CNNNetwork network(readNetwork(repeatingNetwork("f32")));
    network.getInputsInfo().at("x")->setPrecision(precisionOf<In>());
    network.getOutputsInfo().at("y")->setPrecision(precisionOf<Out>());
    EXPECT_EQ((run<Out, In>(*load(network), elements)), expected);
}

TEST(SetPrecisionTest, InputsUseThePrecisionSetBeforeLoading) {
    const std::vector<float> expected{1, 2, 3, 100, 1, 2, 3, 100};
    expectSettable<std::uint8_t, float>({1, 2, 3, 100}, expected);
    expectSettable<std::int8_t, float>({1, 2, 3, 100}, expected);
    expectSettable<std::int16_t, float>({1, 2, 3, 100}, expected);
    expectSettable<std::int32_t, float>({1, 2, 3, 100}, expected);
    expectSettable<float, float>({1, 2, 3, 100}, expected);
}

TEST(SetPrecisionTest, OutputsUseThePrecisionSetBeforeLoading) {
    const std::vector<float> input{1, 2, 3, 100};
    expectSettable<float, std::uint8_t>(input, {1, 2, 3, 100, 1, 2, 3, 100});
    expectSettable<float, std::int8_t>(input, {1, 2, 3, 100, 1, 2, 3, 100});
    expectSettable<float, std::int16_t>(input, {1, 2, 3, 100, 1, 2, 3, 100});
    expectSettable<float, std::int32_t>(input, {1, 2, 3, 100, 1, 2, 3, 100});
}

TEST(SetPrecisionTest, NegativeNumbersArePreserved) {
    expectSettable<std::int8_t, std::int32_t>({-1, -2, -3, -128},
                                              {-1, -2, -3, -128, -1, -2, -3, -128});
    expectSettable<std::int16_t, std::int16_t>({-1, -2, -3, -30000},
                                               {-1, -2, -3, -30000, -1, -2, -3, -30000});
}

TEST(SetPrecisionTest, SettingOnePortLeavesTheOthersAlone) {
    const std::string text = IrText(11)
                                 .parameter(0, "b", "f32", "2", "b")
                                 .parameter(1, "a", "f32", "2", "a")
                                 .layer(2, "s", "Subtract", "", "f32", {"2", "2"}, {{"2", "s"}})
                                 .layer(3, "p", "Multiply", "", "f32", {"2", "2"}, {{"2", "p"}})
                                 .result(4, "2")
                                 .result(5, "2")
                                 .edge(0, 0, 2, 0)
                                 .edge(1, 0, 2, 1)
                                 .edge(0, 0, 3, 0)
                                 .edge(1, 0, 3, 1)
                                 .edge(2, 2, 4, 0)
                                 .edge(3, 2, 5, 0)
                                 .str();
    CNNNetwork network(readNetwork(text));
    network.getInputsInfo().at("b")->setPrecision(Precision::I8);
    network.getOutputsInfo().at("p")->setPrecision(Precision::I32);
    const auto request = load(network);
    const Blob::Ptr difference = floats({2});
    const Blob::Ptr product = blobOf<std::int32_t>(Precision::I32, {2}, {});
    request->SetBlob("a", floats({2}, {2, 4}));
    request->SetBlob("b", blobOf<std::int8_t>(Precision::I8, {2}, {10, -20}));
    request->SetBlob("p", product);
    request->SetBlob("s", difference);
    request->Infer();
    EXPECT_THAT(elementsOf<float>(difference), ElementsAre(8, -24));
    EXPECT_THAT(elementsOf<std::int32_t>(product), ElementsAre(20, -80));
}

TEST(SetPrecisionTest, StaysWithTheNetwork) {
    const CNNNetwork network(readNetwork(doublingNetwork()));
    network.getInputsInfo().at("x")->setPrecision(Precision::I16);
    network.getOutputsInfo().at("y")->setPrecision(Precision::I32);
    EXPECT_TRUE(network.getInputsInfo().at("x")->getPrecision() == Precision::I16);
    EXPECT_TRUE(network.getInputsInfo().at("x")->getTensorDesc().getPrecision() == Precision::I16);
    EXPECT_TRUE(network.getOutputsInfo().at("y")->getPrecision() == Precision::I32);
}

TEST(DescriptionTest, PortsHaveTheirDimensionsAndTheLayoutOfTheirRank) {
    const CNNNetwork network(readNetwork(repeatingNetwork("f32")));
    EXPECT_EQ(network.getInputsInfo().at("x")->getTensorDesc().getDims(), (SizeVector{4}));
    EXPECT_EQ(network.getInputsInfo().at("x")->getLayout(), C);
    EXPECT_EQ(network.getOutputsInfo().at("y")->getDims(), (SizeVector{8}));
    const CNNNetwork matrix(readNetwork(doublingNetwork()));
    EXPECT_EQ(matrix.getInputsInfo().at("x")->getLayout(), NC);
    EXPECT_EQ(matrix.getInputsInfo().at("x")->name(), "x");
}

}  // namespace
}  // namespace InferenceEngine
