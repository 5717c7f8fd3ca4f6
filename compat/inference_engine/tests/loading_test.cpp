// Loading a network, once and repeatedly.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "network_texts.hpp"
#include "network_under_test.hpp"

namespace InferenceEngine {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::ThrowsMessage;
using General = details::InferenceEngineException;

template <class T>
Blob::Ptr four(const Precision& precision, const std::vector<T>& elements) {
    return blobOf<T>(precision, {1, 4}, elements);
}

/** Returns the output of the doubling network. */
std::vector<float> doubled(InferRequest& request, const Blob::Ptr& input) {
    const Blob::Ptr output = floats({1, 4});
    request.SetBlob("x", input);
    request.SetBlob("y", output);
    request.Infer();
    return elementsOf<float>(output);
}

TEST(LoadingTest, AnUnknownDeviceIsNamed) {
    const CNNNetwork network(readNetwork(doublingNetwork()));
    EXPECT_THAT([&] { Core().LoadNetwork(network, "TOASTER"); },
                ThrowsMessage<General>(AllOf(HasSubstr("TOASTER"), Not(HasSubstr("src/")))));
}

TEST(LoadingTest, TheConfigurationIsPassedOn) {
    const CNNNetwork network(readNetwork(doublingNetwork()));
    const auto loading = [&](const char* name, const char* value) {
        return [&network, name, value] { Core().LoadNetwork(network, "CPU", {{name, value}}); };
    };
    EXPECT_NO_THROW(loading("PERFORMANCE_HINT", "LATENCY")());
    EXPECT_THAT(loading("NO_SUCH_SETTING", "1"),
                ThrowsMessage<ParameterMismatch>(HasSubstr("NO_SUCH_SETTING")));
    EXPECT_THAT(loading("PERFORMANCE_HINT", "SIDEWAYS"),
                ThrowsMessage<ParameterMismatch>(HasSubstr("SIDEWAYS")));
}

TEST(LoadingTest, AConfigurationFileIsRefused) {
    EXPECT_THROW(Core("plugins.xml"), NotImplemented);
}

TEST(LoadingTest, ANetworkOfAnotherClassIsRefused) {
    class OtherNetwork final : public ICNNNetwork {
    public:
        void Release() noexcept override {}
        const InputsDataMap& getInputsInfo() const noexcept override { return inputs_; }
        const OutputsDataMap& getOutputsInfo() const noexcept override { return outputs_; }

    private:
        InputsDataMap inputs_;
        OutputsDataMap outputs_;
    };
    const CNNNetwork network{std::shared_ptr<ICNNNetwork>(std::make_shared<OtherNetwork>())};
    EXPECT_THROW(Core().LoadNetwork(network, "CPU"), NotImplemented);
}

TEST(LoadingTest, ARequestOutlivesEverythingItWasCreatedFrom) {
    InferRequest::Ptr request;
    {
        Core core;
        const auto reader = readNetwork(doublingNetwork());
        ExecutableNetwork loaded = core.LoadNetwork(CNNNetwork(reader), "CPU");
        request = loaded.CreateInferRequestPtr();
    }
    EXPECT_THAT(doubled(*request, floats({1, 4}, {1, 2, 3, 4})), ElementsAre(2, 4, 6, 8));
}

TEST(LoadingTest, RequestsOfOneNetworkAreIndependent) {
    ExecutableNetwork loaded =
        Core().LoadNetwork(CNNNetwork(readNetwork(doublingNetwork())), "CPU");
    const auto first = loaded.CreateInferRequestPtr();
    const auto second = loaded.CreateInferRequestPtr();
    const Blob::Ptr output = floats({1, 4});
    first->SetBlob("x", floats({1, 4}, {1, 2, 3, 4}));
    first->SetBlob("y", output);
    EXPECT_THAT(doubled(*second, floats({1, 4}, {10, 20, 30, 40})), ElementsAre(20, 40, 60, 80));
    first->Infer();
    EXPECT_THAT(elementsOf<float>(output), ElementsAre(2, 4, 6, 8));
}

TEST(LoadingTest, APrecisionSetAfterLoadingAppliesOnlyToTheNextLoad) {
    const CNNNetwork network(readNetwork(doublingNetwork()));
    const auto first = load(network);
    network.getInputsInfo().at("x")->setPrecision(Precision::I8);
    const Blob::Ptr bytes = four<std::int8_t>(Precision::I8, {1, -2, 3, -4});
    EXPECT_THROW(first->SetBlob("x", bytes), ParameterMismatch);
    EXPECT_THAT(doubled(*first, floats({1, 4}, {1, 2, 3, 4})), ElementsAre(2, 4, 6, 8));

    const auto second = load(network);
    EXPECT_THROW(second->SetBlob("x", floats({1, 4})), ParameterMismatch);
    EXPECT_THAT(doubled(*second, bytes), ElementsAre(2, -4, 6, -8));
    EXPECT_THAT(doubled(*first, floats({1, 4}, {0.5F, 2, 3, 4})), ElementsAre(1, 4, 6, 8));
}

TEST(LoadingTest, OutputsUseAChangedPrecisionToo) {
    const CNNNetwork network(readNetwork(doublingNetwork()));
    load(network);
    network.getOutputsInfo().at("y")->setPrecision(Precision::I32);
    const auto request = load(network);
    const Blob::Ptr output = four<std::int32_t>(Precision::I32, {});
    request->SetBlob("x", floats({1, 4}, {1, -2, 3, -4}));
    request->SetBlob("y", output);
    request->Infer();
    EXPECT_THAT(elementsOf<std::int32_t>(output), ElementsAre(2, -4, 6, -8));
}

TEST(LoadingTest, APrecisionMayNarrowFromLoadToLoad) {
    const CNNNetwork network(readNetwork(doublingNetwork()));
    network.getInputsInfo().at("x")->setPrecision(Precision::I32);
    load(network);
    network.getInputsInfo().at("x")->setPrecision(Precision::I16);
    load(network);
    network.getInputsInfo().at("x")->setPrecision(Precision::I8);
    const auto request = load(network);
    EXPECT_THAT(doubled(*request, four<std::int8_t>(Precision::I8, {127, -128, 3, 0})),
                ElementsAre(254, -256, 6, 0));
}

TEST(LoadingTest, APrecisionLostInAnEarlierLoadIsRefused) {
    const CNNNetwork network(readNetwork(doublingNetwork()));
    network.getInputsInfo().at("x")->setPrecision(Precision::I8);
    load(network);
    network.getInputsInfo().at("x")->setPrecision(Precision::FP32);
    EXPECT_THAT([&] { load(network); },
                ThrowsMessage<NotImplemented>(
                    AllOf(HasSubstr("Input \"x\""), HasSubstr("read the network again"))));
    // The precision it has now can still be loaded.
    network.getInputsInfo().at("x")->setPrecision(Precision::I8);
    EXPECT_THAT(doubled(*load(network), four<std::int8_t>(Precision::I8, {1, -2, 3, -4})),
                ElementsAre(2, -4, 6, -8));
}

TEST(LoadingTest, APrecisionThatCannotBeLoadedIsRefusedNamingTheInput) {
    const CNNNetwork network(readNetwork(doublingNetwork()));
    for (const auto precision : {Precision::UNSPECIFIED, Precision::BIN, Precision::I64}) {
        network.getInputsInfo().at("x")->setPrecision(precision);
        EXPECT_THAT([&] { load(network); },
                    ThrowsMessage<NotImplemented>(
                        AllOf(HasSubstr("Input \"x\""), HasSubstr(Precision(precision).name()))));
    }
    network.getInputsInfo().at("x")->setPrecision(Precision::FP32);
    EXPECT_NO_THROW(load(network));
}

}  // namespace
}  // namespace InferenceEngine
