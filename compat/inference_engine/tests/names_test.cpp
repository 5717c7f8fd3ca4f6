// How inputs and outputs are named, and which are listed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "network_under_test.hpp"
#include "support/ir_text.h"

namespace InferenceEngine {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using VelmoraQuavin::testing::IrText;

CNNNetwork networkOf(const std::string& text,
                     const TBlob<std::uint8_t>::Ptr& weights = noWeights()) {
    return CNNNetwork(readNetwork(text, weights));
}

/** Splits the input "x" in two; the Results take the output ports with these numbers. */
IrText splitting(int version, const std::vector<std::size_t>& shown) {
    IrText text(version);
    const bool named = version > 10;
    text.parameter(0, "x", "f32", "1,4", named ? "x" : "")
        .constant(1, "axis", "i64", "", 0, 8)
        .layer(2, "split", "Split", "num_splits=\"2\"", "f32", {"1,4", ""},
               {{"1,2", named ? "left" : ""}, {"1,2", named ? "right" : ""}})
        .edge(0, 0, 2, 0)
        .edge(1, 0, 2, 1);
    for (const std::size_t port : shown) {
        text.result(3 + port, "1,2").edge(2, 2 + port, 3 + port, 0);
    }
    return text;
}

/** Weights holding the axis to split on. */
TBlob<std::uint8_t>::Ptr axisOne() {
    return weightsOf<std::int64_t>({1});
}

TEST(NamesTest, Version10NamesPortsByTheirLayers) {
    const std::string text = IrText(10)
                                 .parameter(0, "image", "f32", "1,4")
                                 .layer(1, "scores", "ReLU", "", "f32", {"1,4"}, {{"1,4", ""}})
                                 .result(2, "1,4")
                                 .edge(0, 0, 1, 0)
                                 .edge(1, 1, 2, 0)
                                 .str();
    const CNNNetwork network = networkOf(text);
    EXPECT_THAT(inputNames(network), ElementsAre("image"));
    EXPECT_THAT(outputNames(network), ElementsAre("scores"));
}

TEST(NamesTest, Version10PrefersLayerNamesToTensorNames) {
    const std::string text =
        IrText(10)
            .parameter(0, "image", "f32", "1,4", "a_tensor,z_tensor")
            .layer(1, "scores", "ReLU", "", "f32", {"1,4"}, {{"1,4", "another_tensor"}})
            .result(2, "1,4")
            .edge(0, 0, 1, 0)
            .edge(1, 1, 2, 0)
            .str();
    const CNNNetwork network = networkOf(text);
    EXPECT_THAT(inputNames(network), ElementsAre("image"));
    EXPECT_THAT(outputNames(network), ElementsAre("scores"));
}

TEST(NamesTest, Version10NumbersTheOutputsOfALayerWithSeveral) {
    EXPECT_THAT(outputNames(networkOf(splitting(10, {0, 1}).str(), axisOne())),
                ElementsAre("split.0", "split.1"));
    EXPECT_THAT(outputNames(networkOf(splitting(10, {1}).str(), axisOne())),
                ElementsAre("split.1"));
}

TEST(NamesTest, Version10NumbersTheOutputsOfTopK) {
    const std::string text = IrText(10)
                                 .parameter(0, "x", "f32", "1,4")
                                 .constant(1, "count", "i64", "", 0, 8)
                                 .layer(2, "best", "TopK", R"(axis="1" mode="max" sort="value")",
                                        "f32", {"1,4", ""}, {{"1,2", ""}, {"1,2", ""}})
                                 .result(3, "1,2")
                                 .result(4, "1,2")
                                 .edge(0, 0, 2, 0)
                                 .edge(1, 0, 2, 1)
                                 .edge(2, 2, 3, 0)
                                 .edge(2, 3, 4, 0)
                                 .str();
    CNNNetwork network = networkOf(text, weightsOf<std::int64_t>({2}));
    EXPECT_THAT(outputNames(network), ElementsAre("best.0", "best.1"));
    EXPECT_TRUE(network.getOutputsInfo().at("best.0")->getPrecision() == Precision::FP32);
    EXPECT_TRUE(network.getOutputsInfo().at("best.1")->getPrecision() == Precision::I32);

    const auto request = load(network);
    const Blob::Ptr values = floats({1, 2});
    const Blob::Ptr indices = blobOf<std::int32_t>(Precision::I32, {1, 2}, {});
    request->SetBlob("x", floats({1, 4}, {3, 9, 1, 5}));
    request->SetBlob("best.0", values);
    request->SetBlob("best.1", indices);
    request->Infer();
    EXPECT_THAT(elementsOf<float>(values), ElementsAre(9, 5));
    EXPECT_THAT(elementsOf<std::int32_t>(indices), ElementsAre(1, 3));
}

TEST(NamesTest, EachNumberedOutputHasItsOwnValues) {
    const auto request = load(networkOf(splitting(10, {0, 1}).str(), axisOne()));
    const Blob::Ptr left = floats({1, 2});
    const Blob::Ptr right = floats({1, 2});
    request->SetBlob("x", floats({1, 4}, {1, 2, 3, 4}));
    request->SetBlob("split.1", right);
    request->SetBlob("split.0", left);
    request->Infer();
    EXPECT_THAT(elementsOf<float>(left), ElementsAre(1, 2));
    EXPECT_THAT(elementsOf<float>(right), ElementsAre(3, 4));
}

TEST(NamesTest, Version10DecodesReferencesInNames) {
    const std::string text =
        IrText(10)
            .parameter(0, "a&amp;b &lt;1&gt;", "f32", "1,4", "zz")
            .layer(1, "out&#x2F;put", "ReLU", "", "f32", {"1,4"}, {{"1,4", "aa"}})
            .result(2, "1,4")
            .edge(0, 0, 1, 0)
            .edge(1, 1, 2, 0)
            .str();
    const CNNNetwork network = networkOf(text);
    EXPECT_THAT(inputNames(network), ElementsAre("a&b <1>"));
    EXPECT_THAT(outputNames(network), ElementsAre("out/put"));
}

TEST(NamesTest, Version11NamesPortsByTheirTensors) {
    const CNNNetwork network = networkOf(splitting(11, {0, 1}).str(), axisOne());
    EXPECT_THAT(inputNames(network), ElementsAre("x"));
    EXPECT_THAT(outputNames(network), ElementsAre("left", "right"));
}

TEST(NamesTest, Version11RefusesAnInputWithoutAName) {
    const std::string text = IrText(11)
                                 .parameter(0, "image", "f32", "1,4")
                                 .layer(1, "scores", "ReLU", "", "f32", {"1,4"}, {{"1,4", "y"}})
                                 .result(2, "1,4")
                                 .edge(0, 0, 1, 0)
                                 .edge(1, 1, 2, 0)
                                 .str();
    const ReadingResult result = tryReading(*makeReader(), text);
    EXPECT_EQ(result.status, NOT_IMPLEMENTED);
    EXPECT_THAT(result.text, HasSubstr("Input 0 of the network has no name"));
}

TEST(NamesTest, Version11RefusesAnOutputWithoutAName) {
    const std::string text = IrText(11)
                                 .parameter(0, "image", "f32", "1,4", "x")
                                 .layer(1, "scores", "ReLU", "", "f32", {"1,4"}, {{"1,4", ""}})
                                 .result(2, "1,4")
                                 .edge(0, 0, 1, 0)
                                 .edge(1, 1, 2, 0)
                                 .str();
    const ReadingResult result = tryReading(*makeReader(), text);
    EXPECT_EQ(result.status, NOT_IMPLEMENTED);
    EXPECT_THAT(result.text, HasSubstr("Output 0 of the network has no name"));
}

class UnusedInputTest : public testing::TestWithParam<int> {};

TEST_P(UnusedInputTest, IsNeitherListedNorNeeded) {
    const int version = GetParam();
    // "a_lonely" feeds nothing; what "lost" feeds reaches no Result.
    const std::string text = IrText(version)
                                 .parameter(0, "a_lonely", "f32", "1,4", "a_lonely,lonely2")
                                 .parameter(1, "lost", "f32", "1,4", "lost")
                                 .parameter(2, "x", "f32", "1,4", "x")
                                 .layer(3, "dead", "ReLU", "", "f32", {"1,4"}, {{"1,4", "dead"}})
                                 .layer(4, "y", "ReLU", "", "f32", {"1,4"}, {{"1,4", "y"}})
                                 .result(5, "1,4")
                                 .edge(1, 0, 3, 0)
                                 .edge(2, 0, 4, 0)
                                 .edge(4, 1, 5, 0)
                                 .str();
    const CNNNetwork network = networkOf(text);
    EXPECT_THAT(inputNames(network), ElementsAre("x"));

    const auto request = load(network);
    const Blob::Ptr output = floats({1, 4});
    request->SetBlob("x", floats({1, 4}, {-1, 2, -3, 4}));
    request->SetBlob("y", output);
    request->Infer();
    EXPECT_THAT(elementsOf<float>(output), ElementsAre(0, 2, 0, 4));
    EXPECT_THROW(request->SetBlob("a_lonely", floats({1, 4})), NotFound);
}

INSTANTIATE_TEST_SUITE_P(Versions, UnusedInputTest, testing::Values(10, 11));

TEST(NamesTest, AnOutputOfTwoResultsIsListedOnce) {
    const std::string text = IrText(10)
                                 .parameter(0, "x", "f32", "1,4")
                                 .layer(1, "y", "ReLU", "", "f32", {"1,4"}, {{"1,4", ""}})
                                 .result(2, "1,4")
                                 .result(3, "1,4")
                                 .edge(0, 0, 1, 0)
                                 .edge(1, 1, 2, 0)
                                 .edge(1, 1, 3, 0)
                                 .str();
    const CNNNetwork network = networkOf(text);
    EXPECT_THAT(outputNames(network), ElementsAre("y"));
    const auto request = load(network);
    const Blob::Ptr output = floats({1, 4});
    request->SetBlob("x", floats({1, 4}, {1, -2, 3, -4}));
    request->SetBlob("y", output);
    request->Infer();
    EXPECT_THAT(elementsOf<float>(output), ElementsAre(1, 0, 3, 0));
}

TEST(NamesTest, InputsAreBoundByNameNotByOrder) {
    const std::string text =
        IrText(11)
            .parameter(0, "zebra", "f32", "1,2", "zebra")
            .parameter(1, "ant", "f32", "1,2", "ant")
            .layer(2, "y", "Subtract", "", "f32", {"1,2", "1,2"}, {{"1,2", "y"}})
            .result(3, "1,2")
            .edge(0, 0, 2, 0)
            .edge(1, 0, 2, 1)
            .edge(2, 2, 3, 0)
            .str();
    const CNNNetwork network = networkOf(text);
    EXPECT_THAT(inputNames(network), ElementsAre("ant", "zebra"));
    const auto request = load(network);
    const Blob::Ptr output = floats({1, 2});
    request->SetBlob("ant", floats({1, 2}, {1, 2}));
    request->SetBlob("zebra", floats({1, 2}, {10, 20}));
    request->SetBlob("y", output);
    request->Infer();
    EXPECT_THAT(elementsOf<float>(output), ElementsAre(9, 18));
}

TEST(NamesTest, IfInputAndOutputShareANameTheInputIsSetFirst) {
    const std::string text =
        IrText(10).parameter(0, "x", "f32", "1,2").result(1, "1,2").edge(0, 0, 1, 0).str();
    const CNNNetwork network = networkOf(text);
    EXPECT_THAT(inputNames(network), ElementsAre("x"));
    EXPECT_THAT(outputNames(network), ElementsAre("x"));
    const auto request = load(network);
    for (const float first : {5.0F, 7.0F}) {
        const Blob::Ptr output = floats({1, 2});
        request->SetBlob("x", floats({1, 2}, {first, 6}));
        request->SetBlob("x", output);
        request->Infer();
        EXPECT_THAT(elementsOf<float>(output), ElementsAre(first, 6));
    }
}

}  // namespace
}  // namespace InferenceEngine
