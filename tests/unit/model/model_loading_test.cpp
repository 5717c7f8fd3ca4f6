#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>

#include "quavin/model.h"
#include "support/recording_model.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"
#include "target_fixture.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::IsOk;
using testing::IsStatus;
using testing::IsStatusWith;
using testing::RecordingModel;

constexpr const char* kNoInput = "There must be at least one defined input name";
constexpr const char* kNoOutput = "There must be at least one defined output name";
constexpr const char* kNoShape = "The input shape has to be defined";

class ModelLoadingTest : public ::testing::Test {
protected:
    QuavinStatus load() { return model_.load(metadataOf(target_)); }
    QuavinStatus loadWithFirstInput(const ModelFeatureDescriptor& input) {
        target_.inputs.front() = input;
        return load();
    }

    RecordingModel model_;
    ModelTarget target_ = completeTarget();
};

TEST_F(ModelLoadingTest, PreparesAndThenLoadsTheComponents) {
    EXPECT_THAT(load(), IsOk());
    EXPECT_THAT(model_.calls, ElementsAre("prepare", "load"));
    ASSERT_EQ(model_.components.size(), 2U);
    EXPECT_EQ(model_.components[0].path, "net.xml");
    EXPECT_EQ(model_.components[1].path, "net.bin");
    EXPECT_TRUE(model_.isLoaded());
}

TEST_F(ModelLoadingTest, KeepsTheMetadata) {
    const auto metadata = metadataOf(target_);
    model_.load(metadata);
    EXPECT_EQ(model_.getMetadata(), metadata);
    const auto other = metadataOf(target_);
    model_.load(other);
    EXPECT_EQ(model_.getMetadata(), other);
}

TEST_F(ModelLoadingTest, KeepsTheMetadataEvenIfLoadingFails) {
    const auto metadata = metadataOf(ModelTarget());
    model_.load(metadata);
    EXPECT_EQ(model_.getMetadata(), metadata);
}

TEST_F(ModelLoadingTest, TheMetadataIsSetBeforeTheEngineLoads) {
    bool there = false;
    model_.duringLoad = [&] { there = model_.getMetadata() != nullptr; };
    load();
    EXPECT_TRUE(there);
}

TEST_F(ModelLoadingTest, NullMetadataIsRefusedAndChangesNothing) {
    const auto metadata = metadataOf(target_);
    model_.load(metadata);
    model_.calls.clear();
    EXPECT_THAT(model_.load(std::shared_ptr<ModelMetadata>()),
                IsStatusWith(INVALID_ARGUMENTS, ::testing::Not(IsEmpty())));
    EXPECT_EQ(model_.getMetadata(), metadata);
    EXPECT_TRUE(model_.isLoaded());
    EXPECT_THAT(model_.calls, IsEmpty());
}

TEST_F(ModelLoadingTest, ATargetWithoutInputsIsRefusedFirst) {
    target_.inputs.clear();
    target_.outputs.clear();
    EXPECT_THAT(load(), IsStatus(MODEL_METADATA_ERROR, kNoInput));
    EXPECT_THAT(model_.calls, IsEmpty());
    EXPECT_FALSE(model_.isLoaded());
}

TEST_F(ModelLoadingTest, AMissingTargetCountsAsOneWithoutInputs) {
    EXPECT_THAT(model_.load(metadataOf(target_, QuavinModelType::CoreML)),
                IsStatus(MODEL_METADATA_ERROR, kNoInput));
    EXPECT_THAT(model_.load(std::make_shared<ModelMetadata>()),
                IsStatus(MODEL_METADATA_ERROR, kNoInput));
}

TEST_F(ModelLoadingTest, ATargetWithoutOutputsIsRefused) {
    target_.outputs.clear();
    EXPECT_THAT(load(), IsStatus(MODEL_METADATA_ERROR, kNoOutput));
    EXPECT_THAT(model_.calls, IsEmpty());
}

TEST_F(ModelLoadingTest, AMissingOutputIsReportedBeforeAnUndefinedShape) {
    target_.outputs.clear();
    EXPECT_THAT(loadWithFirstInput(tensorOf(TensorShape(0))),
                IsStatus(MODEL_METADATA_ERROR, kNoOutput));
}

TEST_F(ModelLoadingTest, AFirstInputWithoutElementsIsRefused) {
    EXPECT_THAT(loadWithFirstInput(tensorOf(TensorShape(1, 0))),
                IsStatus(MODEL_METADATA_ERROR, kNoShape));
    EXPECT_THAT(loadWithFirstInput(tensorOf(TensorShape(2, -3))),
                IsStatus(MODEL_METADATA_ERROR, kNoShape));
    EXPECT_THAT(model_.calls, IsEmpty());
}

TEST_F(ModelLoadingTest, AFirstInputOfVariableShapeThrows) {
    testing::expectThrows<InvalidOperationException>(
        [&] { loadWithFirstInput(tensorOf(TensorShape(1, -1))); }, INVALID_OPERATION,
        "Attempting to infer a tensor shape from a variable-shaped tensor.");
    EXPECT_THAT(model_.calls, IsEmpty());
}

TEST_F(ModelLoadingTest, AScalarFirstInputPasses) {
    EXPECT_THAT(loadWithFirstInput(descriptorOf(QuavinFeatureType::DOUBLE)), IsOk());
    EXPECT_THAT(loadWithFirstInput(descriptorOf(QuavinFeatureType::IMAGE)), IsOk());
}

TEST_F(ModelLoadingTest, OnlyTheFirstInputIsChecked) {
    target_.inputs.push_back(tensorOf(TensorShape(1, -1), "second"));
    target_.inputs.push_back(tensorOf(TensorShape(0), "third"));
    EXPECT_THAT(load(), IsOk());
}

TEST_F(ModelLoadingTest, TheNameListsAreNotChecked) {
    target_.inputNames.clear();
    target_.outputNames.clear();
    EXPECT_THAT(load(), IsOk());
}

TEST_F(ModelLoadingTest, AFailedPreparationStopsLoading) {
    model_.prepareAnswer = {OUT_OF_RANGE, "not prepared"};
    EXPECT_THAT(load(), IsStatus(OUT_OF_RANGE, "not prepared"));
    EXPECT_THAT(model_.calls, ElementsAre("prepare"));
    EXPECT_FALSE(model_.isLoaded());
}

TEST_F(ModelLoadingTest, ATargetWithoutComponentsIsRefusedAfterPreparation) {
    target_.components.clear();
    EXPECT_THAT(load(), IsStatus(MODEL_METADATA_ERROR, "No model component found"));
    EXPECT_THAT(model_.calls, ElementsAre("prepare"));
    EXPECT_FALSE(model_.isLoaded());
}

TEST_F(ModelLoadingTest, ATargetWithoutComponentsLeavesALoadedModelLoaded) {
    load();
    target_.components.clear();
    EXPECT_THAT(load(), IsStatus(MODEL_METADATA_ERROR, "No model component found"));
    EXPECT_TRUE(model_.isLoaded());
}

TEST_F(ModelLoadingTest, AnEngineFailureIsReturnedAndTheModelIsNotLoaded) {
    load();
    model_.loadAnswer = {FILE_ERROR, "no such file"};
    EXPECT_THAT(load(), IsStatus(FILE_ERROR, "no such file"));
    EXPECT_FALSE(model_.isLoaded());
}

TEST_F(ModelLoadingTest, ASuccessWithATextIsPassedOn) {
    model_.loadAnswer = {SUCCESS, "with a remark"};
    EXPECT_THAT(load(), IsStatus(SUCCESS, "with a remark"));
    EXPECT_TRUE(model_.isLoaded());
}

TEST_F(ModelLoadingTest, AnEngineThatThrowsLeavesTheModelNotLoaded) {
    load();
    model_.duringLoad = [] { throw std::runtime_error("engine trouble"); };
    EXPECT_THROW(load(), std::runtime_error);
    EXPECT_FALSE(model_.isLoaded());
}

TEST_F(ModelLoadingTest, TheEngineMayReleaseTheMetadataWhileItLoads) {
    model_.duringLoad = [&] { model_.releaseMetadata(); };
    EXPECT_THAT(load(), IsOk());
    EXPECT_EQ(model_.components.size(), 2U);
}

TEST_F(ModelLoadingTest, ReleasingTheMetadataMarksTheModelNotLoaded) {
    load();
    model_.releaseMetadata();
    EXPECT_EQ(model_.getMetadata(), nullptr);
    EXPECT_FALSE(model_.isLoaded());
}

class ManifestLoadingTest : public ::testing::Test {
protected:
    Filepath manifest(std::string_view content) const {
        directory_.write("manifest.json", content);
        return Filepath(directory_.entry("manifest.json"));
    }

    testing::TempDirectory directory_;
    RecordingModel model_;
};

TEST_F(ManifestLoadingTest, ReadsTheManifestIntoTheStoredMetadataAndLoads) {
    const auto metadata = std::make_shared<ModelMetadata>();
    model_.load(metadata);
    const Filepath path = manifest(R"({"name": "from the file", "targets": {"Openvino": {
        "components": [{"name": "file", "path": "net.xml"}],
        "inputs": [{"name": "in", "featureType": "tensor",
                    "tensor": {"shape": [1, 2], "dataType": "float"}}],
        "outputs": [{"name": "out", "featureType": "tensor"}]}}})");

    EXPECT_THAT(model_.load(path), IsOk());
    EXPECT_EQ(model_.getMetadata(), metadata);
    EXPECT_EQ(metadata->getName(), "from the file");
    EXPECT_THAT(model_.calls, ElementsAre("prepare", "load"));
    ASSERT_EQ(model_.components.size(), 1U);
    EXPECT_EQ(model_.components[0].path, "net.xml");
    EXPECT_TRUE(model_.isLoaded());
}

TEST_F(ManifestLoadingTest, AnUnreadableManifestReturnsTheMetadatasStatus) {
    model_.load(metadataOf(ModelTarget()));
    EXPECT_THAT(model_.load(Filepath(directory_.entry("missing.json"))),
                IsStatus(MODEL_METADATA_ERROR,
                         "Failed to open metadata file at " + directory_.entry("missing.json")));
    EXPECT_THAT(model_.calls, IsEmpty());
}

TEST_F(ManifestLoadingTest, AManifestWithoutTargetsReturnsTheMetadatasStatus) {
    model_.load(metadataOf(completeTarget()));
    model_.calls.clear();
    EXPECT_THAT(model_.load(manifest("{}")),
                IsStatus(MODEL_METADATA_ERROR, "No target found in root of manifest file"));
    EXPECT_THAT(model_.calls, IsEmpty());
}

TEST_F(ManifestLoadingTest, IsRefusedWithoutStoredMetadata) {
    EXPECT_THAT(model_.load(manifest("{}")),
                IsStatusWith(INVALID_ARGUMENTS, ::testing::Not(IsEmpty())));
    EXPECT_THAT(model_.calls, IsEmpty());
}

}  // namespace
}  // namespace VelmoraQuavin
