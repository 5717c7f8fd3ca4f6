// Networks that were exported and imported again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <tuple>

#include "network_texts.hpp"
#include "network_under_test.hpp"
#include "port_section.hpp"
#include "support/ir_text.h"
#include "support/temp_directory.h"

namespace InferenceEngine {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StrEq;
using testing::ThrowsMessage;
using VelmoraQuavin::testing::IrText;
using VelmoraQuavin::testing::TempDirectory;

/** Half precision has neither these values nor their sums. */
const std::vector<float> kShift{0x1.000002p0F, -0x1.fffffep-20F, 0x1.abcdeap18F, 0x1p-100F};
const std::vector<float> kInput{0x1.8p-1F, 0x1.000002p-20F, 1, 0x1p-99F};

ExecutableNetwork loaded(const std::string& text,
                         const TBlob<std::uint8_t>::Ptr& weights = noWeights()) {
    return Core().LoadNetwork(CNNNetwork(readNetwork(text, weights)), "CPU");
}

ExecutableNetwork shifting() {
    return loaded(addingNetwork(), weightsOf(kShift));
}

std::vector<float> outputOf(InferRequest& request, const std::vector<float>& input = kInput) {
    const Blob::Ptr output = floats({1, 4});
    request.SetBlob("x", floats({1, 4}, input));
    request.SetBlob("y", output);
    request.Infer();
    return elementsOf<float>(output);
}

std::vector<float> outputOf(ExecutableNetwork network) {
    return outputOf(*network.CreateInferRequestPtr());
}

using Description = std::tuple<std::string, int, SizeVector, int>;

template <class Ports>
std::vector<Description> describe(const Ports& ports) {
    std::vector<Description> all;
    for (const auto& [name, port] : ports) {
        const TensorDesc& desc = port->getTensorDesc();
        all.emplace_back(name, desc.getPrecision().getPrecVal(), desc.getDims(), desc.getLayout());
    }
    return all;
}

void expectSamePorts(const ExecutableNetwork& left, const ExecutableNetwork& right) {
    EXPECT_EQ(describe(left.GetInputsInfo()), describe(right.GetInputsInfo()));
    EXPECT_EQ(describe(left.GetOutputsInfo()), describe(right.GetOutputsInfo()));
}

TEST(ImportTest, PredictsTheSameToTheLastBit) {
    const ExecutableNetwork network = shifting();
    std::vector<float> sums;
    sums.reserve(kInput.size());
    for (std::size_t i = 0; i < kInput.size(); ++i) {
        sums.push_back(kInput[i] + kShift[i]);
    }
    EXPECT_EQ(outputOf(network), sums);
    EXPECT_EQ(outputOf(imported(exported(network))), sums);
}

TEST(ImportTest, AnImportedNetworkCanBeExportedAgain) {
    const ExecutableNetwork network = shifting();
    const ExecutableNetwork again = imported(exported(imported(exported(network))));
    EXPECT_EQ(outputOf(again), outputOf(network));
    expectSamePorts(again, network);
}

TEST(ImportTest, DescribesThePortsWithThePrecisionsTheyWereLoadedWith) {
    const CNNNetwork network(readNetwork(doublingNetwork()));
    network.getInputsInfo().at("x")->setPrecision(Precision::I8);
    network.getOutputsInfo().at("y")->setPrecision(Precision::I32);
    const ExecutableNetwork original = Core().LoadNetwork(network, "CPU");
    ExecutableNetwork copy = imported(exported(original));
    expectSamePorts(copy, original);
    EXPECT_TRUE(copy.GetInputsInfo().at("x")->getPrecision() == Precision::I8);
    EXPECT_TRUE(copy.GetOutputsInfo().at("y")->getPrecision() == Precision::I32);

    const auto request = copy.CreateInferRequestPtr();
    const Blob::Ptr output = blobOf<std::int32_t>(Precision::I32, {1, 4}, {});
    request->SetBlob("x", blobOf<std::int8_t>(Precision::I8, {1, 4}, {1, -2, 3, -128}));
    request->SetBlob("y", output);
    request->Infer();
    EXPECT_THAT(elementsOf<std::int32_t>(output), ElementsAre(2, -4, 6, -256));
}

TEST(ImportTest, KeepsTheNamesOfLayers) {
    const std::string text =
        IrText(10)
            .parameter(0, "zebra", "f32", "1,2", "a")
            .parameter(1, "ant", "f32", "1,2", "b")
            .layer(2, "out&#x2F;put", "Subtract", "", "f32", {"1,2", "1,2"}, {{"1,2", "c"}})
            .result(3, "1,2")
            .edge(0, 0, 2, 0)
            .edge(1, 0, 2, 1)
            .edge(2, 2, 3, 0)
            .str();
    const ExecutableNetwork original = loaded(text);
    ExecutableNetwork copy = imported(exported(original));
    expectSamePorts(copy, original);

    const auto request = copy.CreateInferRequestPtr();
    const Blob::Ptr output = floats({1, 2});
    request->SetBlob("ant", floats({1, 2}, {1, 2}));
    request->SetBlob("zebra", floats({1, 2}, {10, 20}));
    request->SetBlob("out/put", output);
    request->Infer();
    EXPECT_THAT(elementsOf<float>(output), ElementsAre(9, 18));
}

TEST(ImportTest, APortWithoutDimensionsStaysOne) {
    const std::string text = IrText(11)
                                 .parameter(0, "x", "f32", "", "x")
                                 .layer(1, "y", "Add", "", "f32", {"", ""}, {{"", "y"}})
                                 .result(2, "")
                                 .edge(0, 0, 1, 0)
                                 .edge(0, 0, 1, 1)
                                 .edge(1, 2, 2, 0)
                                 .str();
    const ExecutableNetwork original = loaded(text);
    const ExecutableNetwork copy = imported(exported(original));
    expectSamePorts(copy, original);
    EXPECT_EQ(copy.GetInputsInfo().at("x")->getLayout(), SCALAR);
}

TEST(ImportTest, AnOutputMayBeAnInput) {
    const std::string text =
        IrText(10).parameter(0, "x", "f32", "1,2").result(1, "1,2").edge(0, 0, 1, 0).str();
    ExecutableNetwork copy = imported(exported(loaded(text)));
    const auto request = copy.CreateInferRequestPtr();
    for (const float first : {5.0F, 7.0F}) {
        const Blob::Ptr output = floats({1, 2});
        request->SetBlob("x", floats({1, 2}, {first, 6}));
        request->SetBlob("x", output);
        request->Infer();
        EXPECT_THAT(elementsOf<float>(output), ElementsAre(first, 6));
    }
}

TEST(ImportTest, UnusedInputsStayHidden) {
    const std::string text = IrText(11)
                                 .parameter(0, "a_lonely", "f32", "1,4", "a_lonely")
                                 .parameter(1, "x", "f32", "1,4", "x")
                                 .layer(2, "y", "ReLU", "", "f32", {"1,4"}, {{"1,4", "y"}})
                                 .result(3, "1,4")
                                 .edge(1, 0, 2, 0)
                                 .edge(2, 1, 3, 0)
                                 .str();
    ExecutableNetwork copy = imported(exported(loaded(text)));
    EXPECT_EQ(copy.GetInputsInfo().count("a_lonely"), 0U);
    EXPECT_THAT(outputOf(*copy.CreateInferRequestPtr(), {-1, 2, -3, 4}), ElementsAre(0, 2, 0, 4));
}

TEST(ImportTest, UsesSinglePrecisionByDefault) {
    EXPECT_THAT(configOf(imported(exported(shifting())), "INFERENCE_PRECISION_HINT"), StrEq("f32"));
}

TEST(ImportTest, LeavesTheThreadsUnpinnedByDefault) {
    EXPECT_THAT(configOf(imported(exported(shifting())), "ENABLE_CPU_PINNING"), StrEq("NO"));
}

TEST(ImportTest, SettingsReachTheNetwork) {
    const std::string bytes = exported(shifting());
    const auto capabilities =
        Core().GetMetric("CPU", "OPTIMIZATION_CAPABILITIES").as<std::vector<std::string>>();
    const auto has = [&](const char* capability) {
        return testing::Value(capabilities, Contains(capability));
    };
    const ExecutableNetwork copy =
        imported(bytes, {{"CPU_THREADS_NUM", "1"}, {"ENFORCE_BF16", "YES"}});
    EXPECT_THAT(configOf(copy, "INFERENCE_NUM_THREADS"), StrEq("1"));
    EXPECT_THAT(configOf(copy, "INFERENCE_PRECISION_HINT"), StrEq(has("BF16")   ? "bf16"
                                                                  : has("FP16") ? "f16"
                                                                                : "f32"));
    EXPECT_THAT(configOf(imported(bytes, {{"CPU_THREADS_NUM", "1"}}), "INFERENCE_PRECISION_HINT"),
                StrEq("f32"));
    EXPECT_THAT(
        [&] {
            imported(bytes, {{"CPU_THREADS_NUM", "many"}});
        },
        ThrowsMessage<ParameterMismatch>(HasSubstr("CPU_THREADS_NUM = many: ")));
}

TEST(ImportTest, RequestsOfOneNetworkAreIndependent) {
    ExecutableNetwork network = imported(exported(loaded(doublingNetwork())));
    const auto first = network.CreateInferRequestPtr();
    const auto second = network.CreateInferRequestPtr();
    const Blob::Ptr output = floats({1, 4});
    first->SetBlob("x", floats({1, 4}, {1, 2, 3, 4}));
    first->SetBlob("y", output);
    EXPECT_THAT(outputOf(*second, {10, 20, 30, 40}), ElementsAre(20, 40, 60, 80));
    first->Infer();
    EXPECT_THAT(elementsOf<float>(output), ElementsAre(2, 4, 6, 8));
}

TEST(ImportTest, ReadsAFileFromWhereItsStreamIs) {
    const ExecutableNetwork network = shifting();
    const TempDirectory directory;
    directory.write("network", "before" + exported(network));
    std::ifstream file(directory.path() / "network", std::ios::binary);
    file.ignore(6);
    EXPECT_EQ(outputOf(Core().ImportNetwork(file, "CPU")), outputOf(network));
}

TEST(ImportTest, WhatExportDidNotWriteIsRefused) {
    for (const char* const bytes : {"", "Q", "not an exported network, although long enough"}) {
        EXPECT_THAT([&] { imported(bytes); },
                    ThrowsMessage<NetworkNotRead>(HasSubstr("not an exported network")));
    }
    std::ifstream missing("no/such/file");
    EXPECT_THROW(Core().ImportNetwork(missing, "CPU"), NetworkNotRead);
    std::istream nothing(nullptr);
    EXPECT_THROW(Core().ImportNetwork(nothing, "CPU"), NetworkNotRead);
}

/** An exported network, with its port section taken apart. */
struct Parts {
    explicit Parts(std::string all)
        : bytes(std::move(all)), blob(bytes), ports(runtime::takePortSection(blob)) {}

    ExecutableNetwork importedWith(const std::vector<runtime::LoadedPort>& others) const {
        return imported(runtime::portSection(others) + std::string(blob));
    }

    std::string bytes;
    std::string_view blob;
    std::vector<runtime::LoadedPort> ports;
};

TEST(ImportTest, ANetworkThatIsCutShortIsRefused) {
    const Parts parts(exported(shifting()));
    const std::size_t section = parts.bytes.size() - parts.blob.size();
    for (const std::size_t size : {section - 1, section, section + 1, parts.bytes.size() / 2}) {
        EXPECT_ANY_THROW(imported(parts.bytes.substr(0, size)));
    }
}

// The runtime knows nothing of the port section, so it would let a request go wrong later.
TEST(ImportTest, PortsThatAreNotTheNetworksAreRefused) {
    const Parts parts(exported(shifting()));
    ASSERT_EQ(parts.ports.size(), 2U);
    EXPECT_NO_THROW(parts.importedWith(parts.ports));
    const auto refused =
        ThrowsMessage<NetworkNotRead>(HasSubstr("\"y\" is not described as it was"));
    std::vector<runtime::LoadedPort> others = parts.ports;
    others[1].precision = Precision::I32;
    EXPECT_THAT([&] { parts.importedWith(others); }, refused);
    others = parts.ports;
    others[1].dims = {4, 1};
    EXPECT_THAT([&] { parts.importedWith(others); }, refused);
    others = parts.ports;
    others[1].index = 1;
    EXPECT_ANY_THROW(parts.importedWith(others));
}

TEST(ImportTest, AnUnknownDeviceIsNamed) {
    std::istringstream stream(exported(shifting()));
    EXPECT_THAT([&] { Core().ImportNetwork(stream, "TOASTER"); },
                ThrowsMessage<details::InferenceEngineException>(HasSubstr("TOASTER")));
}

}  // namespace
}  // namespace InferenceEngine
