#include "topology.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <string>
#include <vector>

#include "network_texts.hpp"
#include "support/ir_text.h"

namespace InferenceEngine::runtime {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;
using VelmoraQuavin::testing::IrText;

TEST(TopologyTest, LayersNameThePortsUpToVersion10) {
    const Topology topology =
        readTopology(IrText(10)
                         .parameter(0, "in", "f32", "4")
                         .layer(1, "split", "Split", "", "f32", {"4", ""}, {{"2", ""}, {"2", ""}})
                         .layer(2, "relu", "ReLU", "", "f32", {"2"}, {{"2", ""}})
                         .result(3, "2")
                         .result(4, "2")
                         .edge(0, 0, 1, 0)
                         .edge(1, 3, 3, 0)
                         .edge(1, 2, 2, 0)
                         .edge(2, 1, 4, 0)
                         .str());
    EXPECT_THAT(topology.inputs, ElementsAre(Pair("in", "in")));
    EXPECT_THAT(topology.outputs,
                UnorderedElementsAre(Pair("split.1", "split.1"), Pair("relu", "relu")));
    EXPECT_THAT(topology.unusedInputs, IsEmpty());
}

TEST(TopologyTest, LayersAreFoundByTheNamesOfTheirTensors) {
    const Topology topology =
        readTopology(IrText(10)
                         .parameter(0, "in", "f32", "4", "one,two")
                         .layer(1, "s", "Split", "", "f32", {"4", ""}, {{"2", "a"}, {"2", "b,c"}})
                         .result(2, "2")
                         .edge(0, 0, 1, 0)
                         .edge(1, 3, 2, 0)
                         .str());
    EXPECT_THAT(topology.inputs,
                UnorderedElementsAre(Pair("one", "in"), Pair("two", "in"), Pair("in", "in")));
    EXPECT_THAT(topology.outputs,
                UnorderedElementsAre(Pair("b", "s.1"), Pair("c", "s.1"), Pair("s.1", "s.1")));
}

TEST(TopologyTest, LaterVersionsNameTheirOwnPorts) {
    const Topology topology = readTopology(doublingNetwork(11));
    EXPECT_THAT(topology.inputs, IsEmpty());
    EXPECT_THAT(topology.outputs, IsEmpty());
    EXPECT_THAT(topology.unusedInputs, IsEmpty());
}

TEST(TopologyTest, UnusedInputsAreListedByAllTheirNames) {
    const auto network = [](int version) {
        return IrText(version).parameter(0, "layer", "f32", "4", "one,two\\,three").str();
    };
    EXPECT_THAT(readTopology(network(10)).unusedInputs, ElementsAre("one", "two,three", "layer"));
    EXPECT_THAT(readTopology(network(11)).unusedInputs, ElementsAre("one", "two,three"));
}

TEST(TopologyTest, AnInputThatOnlyFeedsAStateIsUsed) {
    const Topology topology = readTopology(
        IrText(11)
            .parameter(0, "in", "f32", "4", "in")
            .layer(1, "state", "Assign", "variable_id=\"s\"", "f32", {"4"}, {{"4", ""}})
            .edge(0, 0, 1, 0)
            .str());
    EXPECT_THAT(topology.unusedInputs, IsEmpty());
}

TEST(TopologyTest, BodiesOfLayersAreNotPartOfTheNetwork) {
    const Topology topology = readTopology(
        "<net version=\"10\"><layers>"
        "<layer id=\"0\" name=\"in\" type=\"Parameter\"><output><port id=\"0\"/></output></layer>"
        "<layer id=\"1\" name=\"loop\" type=\"TensorIterator\">"
        "<input><port id=\"0\"/></input><output><port id=\"1\"/></output>"
        "<body><layers>"
        "<layer id=\"0\" name=\"inner\" type=\"Parameter\"><output><port "
        "id=\"0\"/></output></layer>"
        "<layer id=\"2\" name=\"inner_result\" type=\"Result\"/>"
        "</layers><edges/></body></layer>"
        "<layer id=\"2\" name=\"out\" type=\"Result\"/>"
        "</layers><edges><edge from-layer=\"0\" from-port=\"0\" to-layer=\"1\" to-port=\"0\"/>"
        "<edge from-layer=\"1\" from-port=\"1\" to-layer=\"2\" to-port=\"0\"/></edges></net>");
    EXPECT_THAT(topology.inputs, ElementsAre(Pair("in", "in")));
    EXPECT_THAT(topology.outputs, ElementsAre(Pair("loop", "loop")));
    EXPECT_THAT(topology.unusedInputs, IsEmpty());
}

TEST(TopologyTest, WhatFollowsTheNetworkIsIgnored) {
    const Topology topology = readTopology(
        IrText(10).parameter(0, "in", "f32", "4").result(1, "4").edge(0, 0, 1, 0).str() +
        R"(</net><layers><layer id="9" name="x" type="Parameter"/>)");
    EXPECT_THAT(topology.inputs, ElementsAre(Pair("in", "in")));
    EXPECT_THAT(topology.unusedInputs, IsEmpty());
}

TEST(TopologyTest, EdgesToUnknownLayersAndLoopsAreHarmless) {
    const Topology topology = readTopology(IrText(10)
                                               .parameter(0, "in", "f32", "4")
                                               .layer(1, "a", "ReLU", "", "f32", {"4"}, {{"4", ""}})
                                               .result(2, "4")
                                               .edge(0, 0, 1, 0)
                                               .edge(1, 1, 1, 0)
                                               .edge(1, 1, 2, 0)
                                               .edge(7, 0, 2, 0)
                                               .edge(1, 1, 8, 0)
                                               .str());
    EXPECT_THAT(topology.inputs, ElementsAre(Pair("in", "in")));
    EXPECT_THAT(topology.outputs, ElementsAre(Pair("a", "a")));
}

TEST(TopologyTest, TextThatIsNotANetworkHasNoPorts) {
    EXPECT_THAT(readTopology("").inputs, IsEmpty());
    EXPECT_THAT(readTopology("</net><layers><port id=\"1\"/>").inputs, IsEmpty());
    EXPECT_THAT(readTopology("<net><layers><x><output><port id=\"1\"/>").inputs, IsEmpty());
}

/** Returns the best processor time, in seconds, for a layer with this many outputs, all of them
 * used. */
double secondsFor(std::size_t outputs) {
    IrText text(10);
    text.layer(0, "s", "Split", "", "f32", {}, std::vector<IrText::Output>(outputs, {"2", "t"}));
    for (std::size_t i = 0; i < outputs; ++i) {
        text.result(1 + i, "2").edge(0, i, 1 + i, 0);
    }
    const std::string network = text.str();
    double best = 1e9;
    for (int round = 0; round < 3; ++round) {
        const std::clock_t begin = std::clock();
        EXPECT_EQ(readTopology(network).outputs.count("s." + std::to_string(outputs - 1)), 1U);
        best = std::min(best, static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    }
    return best;
}

// Eight times as many outputs would take 64 times as long if each were searched for among all.
TEST(TopologyTest, TimeIsProportionalToTheOutputs) {
    [[maybe_unused]] const double seconds = secondsFor(40'000);
#if !defined(_WIN32)  // where std::clock() also counts other programs' time
    EXPECT_LT(seconds, 24 * std::max(secondsFor(5'000), 0.002));
#endif
}

}  // namespace
}  // namespace InferenceEngine::runtime
