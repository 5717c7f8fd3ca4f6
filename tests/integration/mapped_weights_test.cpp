// Weights that are mapped into memory instead of being read.

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "integration/model_test.h"
#include "support/recording_log_processor.h"
#include "support/secured_file.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr std::int64_t kWidth = 64;

std::vector<float> wave(std::int64_t size) {
    std::vector<float> values(static_cast<std::size_t>(size));
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = std::sin(static_cast<float>(i));
    }
    return values;
}

// y = x M + b. The matrix spans several pages, and is aligned to its elements only.
IrNetwork denseNetwork() {
    IrNetwork net("dense");
    const auto x = net.input("x", {1, kWidth});
    const auto scale = net.constant<float>("scale", {1, 1}, {0.5F});
    const auto matrix = net.constant<float>("matrix", {kWidth, kWidth}, wave(kWidth * kWidth));
    const auto bias = net.constant<float>("bias", {1, kWidth}, wave(kWidth));
    const auto scaled = net.layer("Multiply", "scaled", {x, scale}, {1, kWidth});
    const auto product = net.layer("MatMul", "product", {scaled, matrix}, {1, kWidth},
                                   R"(transpose_a="false" transpose_b="false")");
    net.output(net.layer("Add", "y", {product, bias}, {1, kWidth}));
    return net;
}

EngineOptions mapping() {
    EngineOptions options;
    options.mapWeights = true;
    return options;
}

class MappedWeights : public ModelTest {
protected:
    MappedWeights() { writePackage(directory_, denseNetwork()); }

    QuavinStatus loadWith(const EngineOptions& options) {
        return client_.getModel(directory_.text(), model_, 0, QuavinModelType::Openvino, options);
    }
    std::vector<float> prediction() {
        EXPECT_THAT(allocateInputs(), IsOk());
        return predictFloats(wave(kWidth));
    }
};

TEST(MappingWeights, IsAnOptionThatTellsOptionsApart) {
    EXPECT_NE(mapping(), EngineOptions());
    EXPECT_EQ(mapping(), mapping());
}

TEST_F(MappedWeights, PredictWhatReadOnesPredict) {
    ASSERT_THAT(loadWith(EngineOptions()), IsOk());
    const std::vector<float> expected = prediction();
    ASSERT_THAT(loadWith(mapping()), IsOk());
    EXPECT_EQ(prediction(), expected);  // to the last bit
}

TEST_F(MappedWeights, MayBeEmpty) {
    writePackage(directory_, sumNetwork());
    ASSERT_THAT(loadWith(mapping()), IsOk());
    EXPECT_THAT(allocateInputs(), IsOk());
    EXPECT_THAT(predictFloats({1, 2}), ElementsAre(2.F, 4.F));
}

TEST_F(MappedWeights, ThatAreMissingAnswer3) {
    std::filesystem::remove(directory_.path() / "net.bin");
    EXPECT_THAT(loadWith(mapping()), IsStatus(FILE_ERROR, "File error!"));
}

#ifdef __linux__  // which shows what is mapped

class MappedWeightsOnLinux : public MappedWeights {
protected:
    // Whether the weights file is mapped.
    bool isMapped() const {
        const auto file = std::filesystem::canonical(directory_.path()) / "net.bin";
        std::ostringstream mappings;
        mappings << std::ifstream("/proc/self/maps").rdbuf();
        return mappings.str().find(file.string()) != std::string::npos;
    }
};

TEST_F(MappedWeightsOnLinux, AreReleasedWithTheModel) {
    ASSERT_THAT(loadWith(mapping()), IsOk());
    EXPECT_TRUE(isMapped());
    prediction();
    outputs_.clear();
    EXPECT_TRUE(isMapped());
    model_.reset();
    EXPECT_FALSE(isMapped());
}

TEST_F(MappedWeightsOnLinux, AreNotTheDefault) {
    ASSERT_THAT(load(), IsOk());
    EXPECT_FALSE(isMapped());
}

TEST_F(MappedWeightsOnLinux, AreReleasedIfTheNetworkIsRefused) {
    directory_.write("net.xml", "<net>");
    EXPECT_THAT(loadWith(mapping()), IsStatusWith(FILE_ERROR, ::testing::_));
    model_.reset();
    EXPECT_FALSE(isMapped());
}

TEST_F(MappedWeightsOnLinux, StayTheSameIfAnotherFileTakesTheirPlace) {
    ASSERT_THAT(loadWith(mapping()), IsOk());
    const std::vector<float> expected = prediction();
    directory_.write("new.bin", std::string(denseNetwork().weights().size(), '\0'));
    std::filesystem::rename(directory_.path() / "new.bin", directory_.path() / "net.bin");
    EXPECT_EQ(prediction(), expected);
}

TEST_F(MappedWeightsOnLinux, AreTheConfigurationsChoiceToo) {
    QuavinClient::terminate();
    QuavinConfig config;
    config.SetEngineOptions(mapping());
    ASSERT_THAT(QuavinClient::init(config), IsOk());
    ASSERT_THAT(load(), IsOk());
    EXPECT_TRUE(isMapped());
}

TEST_F(MappedWeightsOnLinux, SecuredOnesAreReadAndDecrypted) {
    ASSERT_THAT(loadWith(EngineOptions()), IsOk());
    const std::vector<float> expected = prediction();
    const IrNetwork network = denseNetwork();
    PackageText text = describe(network);
    text.components = {{"secured_file", "net.xml"}, {"secured_file", "net.bin"}};
    writeManifest(directory_, text);
    directory_.write("net.xml", secured(network.topology(), countingKey(), BlockFilling::kPkcs7));
    directory_.write("net.bin", secured(network.weights(), countingKey(), BlockFilling::kPkcs7));
    const auto metadata = readManifest();
    for (auto& component : metadata->getTargets().at(QuavinModelType::Openvino).components) {
        component.setCryptoKey(countingKey().data());
    }
    ASSERT_THAT(client_.getModel(metadata, model_, QuavinModelType::Openvino, mapping()), IsOk());
    EXPECT_FALSE(isMapped());
    EXPECT_EQ(prediction(), expected);
}

TEST_F(MappedWeightsOnLinux, ThatCannotBeMappedAnswer3AndTheReasonIsDiagnosed) {
    // A regular file that can be read, but has no pages.
    const std::filesystem::path attribute = "/sys/devices/system/cpu/online";
    std::error_code error;
    if (const auto size = std::filesystem::file_size(attribute, error); error || size == 0) {
        GTEST_SKIP() << attribute << " is missing or empty";
    }
    std::filesystem::remove(directory_.path() / "net.bin");
    std::filesystem::create_symlink(attribute, directory_.path() / "net.bin");
    QuavinClient::terminate();
    const auto log = std::make_shared<RecordingLogProcessor>();
    QuavinConfig config;
    config.SetLogger(log);
    config.SetDiagnostics(true);
    ASSERT_THAT(QuavinClient::init(config), IsOk());
    EXPECT_THAT(loadWith(mapping()), IsStatus(FILE_ERROR, "File error!"));
    EXPECT_THAT(log->messages(),
                ElementsAre(StartsWith("reading the file \"" + directory_.entry("net.bin") +
                                       "\": it cannot be mapped into memory: ")));
}

#endif

}  // namespace
}  // namespace VelmoraQuavin::testing
