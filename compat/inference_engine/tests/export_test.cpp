// Exporting loaded networks, and the descriptions of their ports.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "network_texts.hpp"
#include "network_under_test.hpp"

namespace InferenceEngine {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;
using General = details::InferenceEngineException;

TEST(ExportTest, ANetworkThatCannotBeWrittenThrows) {
    ExecutableNetwork network =
        Core().LoadNetwork(CNNNetwork(readNetwork(doublingNetwork())), "CPU");
    std::ostream nowhere(nullptr);
    EXPECT_THAT([&] { network.Export(nowhere); }, ThrowsMessage<General>(HasSubstr("written")));
}

TEST(ExportTest, AnEmptyHandleHasNothingToExport) {
    EXPECT_THAT([] { exported(ExecutableNetwork()); },
                ThrowsMessage<General>(HasSubstr("not initialized")));
}

TEST(LoadedPortsTest, AreThoseOfTheNetworkWhenItWasLoaded) {
    const CNNNetwork network(readNetwork(doublingNetwork()));
    network.getInputsInfo().at("x")->setPrecision(Precision::I8);
    const ExecutableNetwork loaded = Core().LoadNetwork(network, "CPU");
    network.getInputsInfo().at("x")->setPrecision(Precision::U8);
    const ConstInputsDataMap inputs = loaded.GetInputsInfo();
    const ConstOutputsDataMap outputs = loaded.GetOutputsInfo();
    ASSERT_EQ(inputs.size(), 1U);
    ASSERT_EQ(outputs.size(), 1U);
    EXPECT_EQ(inputs.at("x")->name(), "x");
    EXPECT_TRUE(inputs.at("x")->getPrecision() == Precision::I8);
    EXPECT_THAT(inputs.at("x")->getTensorDesc().getDims(), ElementsAre(1, 4));
    EXPECT_EQ(inputs.at("x")->getLayout(), NC);
    EXPECT_EQ(outputs.at("y")->getName(), "y");
    EXPECT_TRUE(outputs.at("y")->getPrecision() == Precision::FP32);
    EXPECT_THAT(outputs.at("y")->getDims(), ElementsAre(1, 4));
}

TEST(LoadedPortsTest, ChangingADescriptionChangesNothingElse) {
    const ExecutableNetwork loaded =
        Core().LoadNetwork(CNNNetwork(readNetwork(doublingNetwork())), "CPU");
    loaded.GetInputsInfo().at("x")->getInputData()->setPrecision(Precision::I8);
    EXPECT_TRUE(loaded.GetInputsInfo().at("x")->getPrecision() == Precision::FP32);
}

}  // namespace
}  // namespace InferenceEngine
