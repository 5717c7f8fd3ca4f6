// The library on an engine other than OpenVINO: an implementation of engine/engine.h is all it
// needs.

#include <gmock/gmock.h>

#include <cstring>
#include <sstream>

#include "engine/engine.h"
#include "quavin/client.h"
#include "quavin/network.h"
#include "support/secured_file.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin {
namespace {

using Features = std::vector<std::shared_ptr<QuavinFeature>>;

// The topology names one input and one output: "x y". The weights are one float, the factor.
struct ScalingNetwork {
    std::string input;
    std::string output;
    float factor = 0;
};

std::string readComponent(const internal::ComponentSource& source,
                          const internal::NetworkComponentEntry& component) {
    internal::ComponentReader reader(source, component);
    std::string bytes(reader.size(), '\0');
    bytes.resize(reader.read(bytes.data()));
    return bytes;
}

ScalingNetwork readNetwork(const internal::NetworkComponents& components) {
    ScalingNetwork network;
    std::istringstream(readComponent(components.source, components.topology)) >> network.input >>
        network.output;
    const std::string weights = readComponent(components.source, components.weights);
    if (network.output.empty() || weights.size() < sizeof network.factor) {
        throw FileException("This is not a network");
    }
    std::memcpy(&network.factor, weights.data(), sizeof network.factor);
    return network;
}

ModelFeatureDescriptor port(const String& name) {
    return {QuavinFeatureType::TENSOR,
            true,
            name,
            "",
            TensorDescriptor(name, TensorShape({2}), false, DataType::FLOAT),
            ImageDescriptor()};
}

class ScalingModel : public QuavinModel {
public:
    explicit ScalingModel(const String& name) : QuavinModel(name, QuavinModelType::MockML) {}

protected:
    QuavinStatus loadImpl(const std::vector<ModelComponent>& components) override {
        const auto source = internal::makeComponentSource(*getMetadata());
        const auto entries = internal::collectNetworkComponents(components, *source);
        QuavinStatus status = internal::checkNetworkComponents(entries);
        if (status.ok()) {
            network_ = readNetwork({*source, entries[0], entries[1]});
        }
        return status;
    }
    QuavinStatus predictImpl(const Features& inputs, Features& outputs,
                             int /*option*/) const override {
        auto output = std::make_shared<QuavinFeatureTensor>(port(network_.output));
        const auto* from = reinterpret_cast<const float*>(inputs.at(0)->asTensor()->buffer());
        auto* to = reinterpret_cast<float*>(output->asTensor()->buffer());
        to[0] = from[0] * network_.factor;
        to[1] = from[1] * network_.factor;
        outputs.push_back(std::move(output));
        return {SUCCESS, ""};
    }
    QuavinStatus unloadImpl() override {
        releaseMetadata();
        return {SUCCESS, ""};
    }

private:
    ScalingNetwork network_;
};

class ScalingEngine : public internal::Engine {
public:
    QuavinModelType type() const noexcept override { return QuavinModelType::MockML; }
    std::shared_ptr<QuavinModel> makeModel(const String& name, const Device& /*device*/,
                                           const EngineOptions& /*options*/) const override {
        return std::make_shared<ScalingModel>(name);
    }
    internal::NetworkPorts describe(const internal::NetworkComponents& components) const override {
        const ScalingNetwork network = readNetwork(components);
        return {{port(network.input)}, {port(network.output)}};
    }
    EngineInfo info(const EngineOptions& /*options*/) const override {
        EngineInfo info;
        info.runtimeVersion = "scaling 1";
        return info;
    }
};

}  // namespace

internal::EngineList internal::builtInEngines() noexcept {
    static const ScalingEngine scaling;
    static const std::array<const Engine*, 1> engines{&scaling};
    return EngineList(engines);
}

namespace testing {
namespace {

class SecondEngine : public ::testing::Test {
protected:
    SecondEngine() { QuavinClient::init(QuavinConfig()); }
    ~SecondEngine() override { QuavinClient::terminate(); }

    void writeManifest(const std::string& engine, const std::string& kind) const {
        const auto feature = [](const std::string& name) {
            return R"({"name": ")" + name +
                   R"(", "featureType": "tensor", "tensor": {"shape": [2], "dataType": "float"}})";
        };
        directory_.write("manifest.json", R"({"name": "scaling", "targets": {")" + engine +
                                              R"(": {"components": [{"name": ")" + kind +
                                              R"(", "path": "net.txt"}, {"name": ")" + kind +
                                              R"(", "path": "net.bin"}], "inputs": [)" +
                                              feature("x") + R"(], "outputs": [)" + feature("y") +
                                              "]}}}");
    }
    void writeSecuredPackage() const {
        writeManifest("MockML", "secured_file");
        directory_.write("net.txt", secured(kTopology, countingKey(), BlockFilling::kPkcs7));
        directory_.write("net.bin", secured(weights(), countingKey(), BlockFilling::kPkcs7));
    }
    std::shared_ptr<ModelMetadata> metadataWithKey() const {
        auto metadata = std::make_shared<ModelMetadata>();
        EXPECT_THAT(metadata->load(Filepath(directory_.entry("manifest.json"))), IsOk());
        for (ModelComponent& component :
             metadata->getTargets().at(QuavinModelType::MockML).components) {
            component.setCryptoKey(countingKey().data());
        }
        return metadata;
    }
    static std::string weights() {
        constexpr float kFactor = -2.5F;
        return {reinterpret_cast<const char*>(&kFactor), sizeof kFactor};
    }
    void expectPrediction() {
        Features inputs;
        ASSERT_THAT(model_->allocateInputs(inputs), IsOk());
        auto* input = reinterpret_cast<float*>(inputs.at(0)->asTensor()->buffer());
        input[0] = 3;
        input[1] = -0.5F;
        Features outputs;
        ASSERT_THAT(model_->predict(inputs, outputs), IsOk());
        const auto* output = reinterpret_cast<const float*>(outputs.at(0)->asTensor()->buffer());
        EXPECT_EQ(output[0], -7.5F);
        EXPECT_EQ(output[1], 1.25F);
    }

    static constexpr const char* kTopology = "x y\n";

    TempDirectory directory_;
    std::shared_ptr<QuavinModel> model_;
};

TEST_F(SecondEngine, PredictsFromAPlainPackage) {
    writeManifest("MockML", "file");
    directory_.write("net.txt", kTopology);
    directory_.write("net.bin", weights());
    ASSERT_THAT(
        QuavinClient::instance().getModel(directory_.text(), model_, 0, QuavinModelType::Undefined),
        IsOk());
    expectPrediction();
}

TEST_F(SecondEngine, PredictsFromASecuredPackageWithoutDecryptingItself) {
    writeSecuredPackage();
    ASSERT_THAT(
        QuavinClient::instance().getModel(metadataWithKey(), model_, QuavinModelType::MockML),
        IsOk());
    expectPrediction();
}

TEST_F(SecondEngine, DescribesASecuredPackage) {
    writeSecuredPackage();
    std::vector<ModelFeatureDescriptor> inputs;
    std::vector<ModelFeatureDescriptor> outputs;
    ASSERT_THAT(describeNetwork(*metadataWithKey(), inputs, outputs), IsOk());
    ASSERT_EQ(inputs.size(), 1U);
    EXPECT_EQ(inputs[0].name(), "x");
    ASSERT_EQ(outputs.size(), 1U);
    EXPECT_EQ(outputs[0].name(), "y");
}

TEST_F(SecondEngine, AMissingComponentAnswers3FileError) {
    writeManifest("MockML", "file");
    directory_.write("net.txt", kTopology);
    EXPECT_THAT(
        QuavinClient::instance().getModel(directory_.text(), model_, 0, QuavinModelType::Undefined),
        IsStatus(FILE_ERROR, "File error!"));
}

TEST_F(SecondEngine, IsReportedByTheClient) {
    EXPECT_EQ(QuavinClient::getEngineType(), QuavinModelType::MockML);
    EngineInfo info;
    ASSERT_THAT(QuavinClient::getEngineInfo(info), IsOk());
    EXPECT_EQ(info.runtimeVersion, "scaling 1");
}

TEST_F(SecondEngine, RefusesPackagesForOpenvino) {
    writeManifest("Openvino", "file");
    for (const auto type : {QuavinModelType::Undefined, QuavinModelType::Openvino}) {
        EXPECT_THAT(
            QuavinClient::instance().getModel(directory_.text(), model_, 0, type),
            IsStatus(MODEL_METADATA_ERROR, "None of the target applicable for the platform found"));
    }
}

}  // namespace
}  // namespace testing
}  // namespace VelmoraQuavin
