// What a host with diagnostics enabled is told about failures whose fixed texts hide the cause.

#include <gmock/gmock.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <thread>

#include "integration/model_test.h"
#include "support/recording_log_processor.h"
#include "support/secured_file.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

QuavinConfig configWith(const std::shared_ptr<ILogProcessor>& logger, bool diagnostics) {
    QuavinConfig config;
    config.SetLogger(logger);
    config.SetDiagnostics(diagnostics);
    return config;
}

class DiagnosticsBase : public ModelTest {
protected:
    explicit DiagnosticsBase(bool asked)
        : DiagnosticsBase(std::make_shared<RecordingLogProcessor>(), asked) {}

    std::vector<std::string> records() const { return recorder_->messages(); }
    void forgetRecords() { recorder_->clear(); }
    std::string loading() const { return "loading the package \"" + directory_.text() + "\": "; }

    const std::shared_ptr<RecordingLogProcessor> recorder_;

private:
    DiagnosticsBase(const std::shared_ptr<RecordingLogProcessor>& recorder, bool asked)
        : ModelTest(configWith(recorder, asked)), recorder_(recorder) {}
};

class Diagnostics : public DiagnosticsBase {
protected:
    Diagnostics() : DiagnosticsBase(true) {}

    // Gives a model that reads four floats a feature that it refuses.
    void refuse(const std::shared_ptr<QuavinFeature>& feature) {
        if (model_ == nullptr) {
            ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
        }
        inputs_ = {feature};
        forgetRecords();
        EXPECT_ANY_THROW(predict());
    }
    void loadPackage(const PackageText& text) {
        writeNetwork(directory_, affineNetwork());
        writeManifest(directory_, text);
        EXPECT_THAT(load(), Not(IsOk()));
    }
};

TEST_F(Diagnostics, RecordsHaveTheDocumentedCategoryAndLevel) {
    EXPECT_THAT(load("nowhere"), Not(IsOk()));
    ASSERT_THAT(records(), SizeIs(1));
    EXPECT_EQ(recorder_->records()[0].category, 4U);
    EXPECT_EQ(recorder_->records()[0].level, 2U);
}

TEST_F(Diagnostics, NothingIsReportedIfEverythingSucceeds) {
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(Diagnostics, AMissingTargetIsReportedWithThePackagesTargets) {
    PackageText text = describe(affineNetwork());
    text.engine = "OpenVino";
    loadPackage(text);
    EXPECT_THAT(records(), ElementsAre(loading() +
                                       "the target \"Openvino\" is needed, but \"targets\" has the "
                                       "members \"OpenVino\""));
    forgetRecords();
    std::vector<ModelFeatureDescriptor> ports;
    EXPECT_THAT(describeNetwork(*readManifest(), ports, ports), Not(IsOk()));
    EXPECT_THAT(records(), ElementsAre(HasSubstr("the target \"Openvino\" is needed")));
}

TEST_F(Diagnostics, AnUnavailableEngineTypeIsNamed) {
    writePackage(directory_, affineNetwork());
    Device device;
    device.engineType = QuavinModelType::MockML;
    EXPECT_THAT(client_.getModel(directory_.text(), model_, device, 0),
                IsStatusWith(MODEL_METADATA_ERROR, Not(IsEmpty())));
    EXPECT_THAT(records(),
                ElementsAre("getModel: engine type 32 was requested, but this library only has 4 "
                            "(Openvino); pass 0 to let it choose"));
}

TEST_F(Diagnostics, UsedAndSkippedComponentsAreNamed) {
    PackageText text = describe(affineNetwork());
    text.components = {{"file", "net.xml"}, {"File", "net.bin"}};
    loadPackage(text);
    EXPECT_THAT(
        records(),
        ElementsAre(loading() + "two components named \"file\" or \"secured_file\" are needed, and "
                                "there is \"net.xml\"; skipped for their names: \"File\""));
    forgetRecords();
    text.components = {{"memory_stream", "a"}};
    loadPackage(text);
    EXPECT_THAT(
        records(),
        ElementsAre(loading() + "two components named \"file\" or \"secured_file\" are needed, and "
                                "there is none; skipped for their names: \"memory_stream\""));
}

TEST_F(Diagnostics, AnUnusableFirstInputIsNamedWithItsShape) {
    PackageText text = describe(affineNetwork());
    text.inputs = {tensorFeature("x", {1, 0}, "float")};
    loadPackage(text);
    text.inputs = {tensorFeature("x", {-1, 4}, "float")};
    loadPackage(text);
    EXPECT_THAT(records(), ElementsAre(loading() + "its first input \"x\" has the shape [1, 0]",
                                       loading() + "its first input \"x\" has the shape [-1, 4]"));
}

TEST_F(Diagnostics, AnInputThatCannotBeAllocatedIsNamed) {
    PackageText text = describe(affineNetwork());
    text.inputs.emplace_back(R"({"name": "picture", "featureType": "image"})");
    writePackage(directory_, affineNetwork());
    writeManifest(directory_, text);
    ASSERT_THAT(load(), IsOk());
    EXPECT_THAT(allocateInputs(),
                IsStatus(INVALID_TYPE, "Undefined feature type for allocating inputs"));
    text.inputs.back() = tensorFeature("huge", {std::int64_t{1} << 62}, "float");
    writeManifest(directory_, text);
    ASSERT_THAT(load(), IsOk());
    EXPECT_THAT(allocateInputs(), IsStatusWith(FAILURE, Not(IsEmpty())));
    EXPECT_THAT(records(),
                ElementsAre("allocateInputs: input \"picture\" has the feature type image",
                            "allocateInputs: input \"huge\" is declared as float "
                            "[4611686018427387904]"));
}

TEST_F(Diagnostics, AnInputWithoutAFeatureIsNamedWithTheGivenFeatures) {
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    EXPECT_THAT(predict(), IsStatus(EMPTY_INPUT_DESCRIPTOR, "Empty Input Feature Descriptor"));
    inputs_ = {featureOf<float>("X", {1, 4}, DataType::FLOAT, {1, 2, 3, 4}), nullptr,
               featureOf<float>("", {1}, DataType::FLOAT, {1})};
    EXPECT_THAT(predict(), IsStatus(EMPTY_INPUT_DESCRIPTOR, "Empty Input Feature Descriptor"));
    EXPECT_THAT(records(),
                ElementsAre("predict: the network's input \"x\" has no feature; given: none",
                            "predict: the network's input \"x\" has no feature; given: \"X\", "
                            "\"\""));
}

TEST_F(Diagnostics, ARefusedInputIsDescribed) {
    const std::string network =
        "predict: input \"x\" of the network has the shape [1, 4], and its ";
    refuse(featureOver("x", {1, 4}, DataType::UINT8, nullptr));
    EXPECT_THAT(records(),
                ElementsAre(network + "feature is declared as uint8 [1, 4] without a tensor"));
    refuse(featureOf<float>("x", {1, 4}, DataType::BOOL, {1}));
    EXPECT_THAT(records(),
                ElementsAre(network + "feature is declared as bool [1, 4] over a tensor of bool "
                                      "[1, 4] with the strides [4, 1]"));
    refuse(featureOver("x", {-1, 4}, DataType::FLOAT,
                       std::make_shared<Tensor>(DataType::FLOAT, TensorShape{1, 4})));
    EXPECT_THAT(records(),
                ElementsAre(network + "feature is declared as float [-1, 4] over a tensor of float "
                                      "[1, 4] with the strides [4, 1]"));
    refuse(std::make_shared<QuavinFeatureDouble>(
        ModelFeatureDescriptor(QuavinFeatureType::DOUBLE, true, "x", "",
                               TensorDescriptor({1, 4}, DataType::FLOAT), ImageDescriptor()),
        1.5));
    EXPECT_THAT(records(),
                ElementsAre(network + "feature is not a tensor but has the type double"));
}

TEST_F(Diagnostics, NothingIsReportedIfTheTextNamesInputAndBytes) {
    refuse(featureOver("x", {1, 4}, DataType::FLOAT, nullptr));
    EXPECT_THAT(records(), IsEmpty());
}

#ifdef QUAVIN_ENGINE_IS_ADAPTER  // these are its words
TEST_F(Diagnostics, TheEnginesTextIsReportedForAnUnexpectedElementType) {
    refuse(featureOf<std::int32_t>("x", {1, 4}, DataType::INT32, {1, 2, 3, 4}));
    EXPECT_THAT(records(), ElementsAre(::testing::AllOf(
                               ::testing::StartsWith("predict: the engine failed: "),
                               HasSubstr("FP32"), HasSubstr("I32"), HasSubstr("\"x\""))));
}
#endif

TEST_F(Diagnostics, ADifferentShapeWithEnoughBytesIsReportedAndPredicts) {
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    inputs_ = {featureOf<float>("x", {4, 1}, DataType::FLOAT, {1, 2, 3, -4})};
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
    EXPECT_THAT(records(),
                ElementsAre("predict: input \"x\" has the shape [4, 1] and is read as the "
                            "network's [1, 4]"));
}

TEST_F(Diagnostics, NoKeyOrSecuredContentIsReported) {
    const IrNetwork network = affineNetwork();
    const CryptoKey key = {'s', 'e', 'c', 'r', 'e', 't', ' ', 'k',
                           'e', 'y', ' ', '1', '2', '3', '4', '5'};
    PackageText text = describe(network);
    text.components = {{"secured_file", "net.xml"}, {"secured_file", "net.bin"}};
    writeManifest(directory_, text);
    directory_.write("net.xml", secured(network.topology(), key, BlockFilling::kPkcs7));
    directory_.write("net.bin", secured(network.weights(), key, BlockFilling::kPkcs7));
    const auto metadata = readManifest();
    for (auto& component : metadata->getTargets().at(QuavinModelType::Openvino).components) {
        component.setCryptoKey(key.data());
    }
    ASSERT_THAT(client_.getModel(metadata, model_, QuavinModelType::Openvino), IsOk());
    refuse(featureOf<std::int32_t>("x", {1, 4}, DataType::INT32, {1, 2, 3, 4}));
    EXPECT_THAT(records(),
                ElementsAre("predict: the engine failed; its message is withheld because "
                            "a component is secured and the message may quote it"));

    forgetRecords();
    directory_.write("net.xml", directory_.read("net.xml").substr(1));
    EXPECT_THAT(client_.getModel(metadata, model_, QuavinModelType::Openvino),
                IsStatusWith(FILE_ERROR, HasSubstr("Could not decrypt file")));
    const std::size_t size = directory_.read("net.xml").size();
    EXPECT_THAT(records(),
                ElementsAre("decrypting \"" + directory_.entry("net.xml") + "\": it has " +
                            std::to_string(size) +
                            " bytes, and a secured file has a multiple of 16, at least 16"));
    EXPECT_THAT(records(), Each(Not(HasSubstr("secret"))));
}

TEST_F(Diagnostics, RecordsOfConcurrentPredictionsArriveOneAtATime) {
    constexpr int kThreads = 4;
    constexpr int kPredictions = 100;
    writePackage(directory_, affineNetwork());
    std::vector<std::shared_ptr<QuavinModel>> models(kThreads);
    for (auto& model : models) {
        ASSERT_THAT(client_.getModel(directory_.text(), model, 0, QuavinModelType::Openvino),
                    IsOk());
    }
    std::vector<std::thread> threads;
    for (const auto& model : models) {
        threads.emplace_back([&model] {
            Features outputs;
            for (int i = 0; i < kPredictions; ++i) {
                EXPECT_FALSE(model->predict({}, outputs).ok());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(records(), SizeIs(kThreads * kPredictions));
    EXPECT_THAT(records(), Each("predict: the network's input \"x\" has no feature; given: none"));
}

class WithoutDiagnostics : public DiagnosticsBase {
protected:
    WithoutDiagnostics() : DiagnosticsBase(false) {}
};

TEST_F(WithoutDiagnostics, TheLibraryReportsNothing) {
    EXPECT_THAT(load("nowhere"), Not(IsOk()));
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    EXPECT_THAT(predict(), Not(IsOk()));
    inputs_ = {featureOf<float>("x", {4, 1}, DataType::FLOAT, {1, 2, 3, -4})};
    EXPECT_THAT(predict(), IsOk());
    inputs_ = {featureOf<std::int32_t>("x", {1, 4}, DataType::INT32, {1, 2, 3, 4})};
    EXPECT_ANY_THROW(predict());
    std::filesystem::remove(directory_.path() / "net.bin");
    EXPECT_THAT(load(), Not(IsOk()));
    EXPECT_THAT(records(), IsEmpty());
}

}  // namespace
}  // namespace VelmoraQuavin::testing
