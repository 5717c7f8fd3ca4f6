#include "topology.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ir_text.hpp"

namespace InferenceEngine::runtime {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
    EXPECT_THAT(topology.inputs, ElementsAre("in"));
    EXPECT_THAT(topology.outputs, ElementsAre("split.1", "relu"));
    EXPECT_THAT(topology.unusedInputs, IsEmpty());
}

TEST(TopologyTest, LaterVersionsNameTheirPortsThemselves) {
    const Topology topology = readTopology(doublingNetwork(11));
    EXPECT_THAT(topology.inputs, IsEmpty());
    EXPECT_THAT(topology.outputs, IsEmpty());
    EXPECT_THAT(topology.unusedInputs, IsEmpty());
}

TEST(TopologyTest, UnusedInputsAreKnownByAllTheirNames) {
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

TEST(TopologyTest, BodiesOfLayersAreNotTheNetwork) {
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
    EXPECT_THAT(topology.inputs, ElementsAre("in"));
    EXPECT_THAT(topology.outputs, ElementsAre("loop"));
    EXPECT_THAT(topology.unusedInputs, IsEmpty());
}

TEST(TopologyTest, WhatFollowsTheNetworkIsIgnored) {
    const Topology topology = readTopology(
        IrText(10).parameter(0, "in", "f32", "4").result(1, "4").edge(0, 0, 1, 0).str() +
        R"(</net><layers><layer id="9" name="x" type="Parameter"/>)");
    EXPECT_THAT(topology.inputs, ElementsAre("in"));
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
    EXPECT_THAT(topology.inputs, ElementsAre("in"));
    EXPECT_THAT(topology.outputs, ElementsAre("a"));
}

TEST(TopologyTest, TextThatIsNoNetworkHasNothing) {
    EXPECT_THAT(readTopology("").inputs, IsEmpty());
    EXPECT_THAT(readTopology("</net><layers><port id=\"1\"/>").inputs, IsEmpty());
    EXPECT_THAT(readTopology("<net><layers><x><output><port id=\"1\"/>").inputs, IsEmpty());
}

}  // namespace
}  // namespace InferenceEngine::runtime
