// What getModel returns if it fails, and what happens to the host's pointer.

#include "integration/get_model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::IsEmpty;

TEST_F(GetModel, AnEmptyPathAnswers4AndLeavesTheModelInPlace) {
    const auto expected = IsStatus(INVALID_MODEL_PATH, "modelpath specified is empty");
    EXPECT_THAT(client_.getModel("", model_, 0, QuavinModelType::Openvino), expected);
    EXPECT_THAT(client_.getModel("", model_, Device(), 0), expected);
    EXPECT_THAT(client_.getModel(std::u16string(), model_, 0, QuavinModelType::Openvino), expected);
    EXPECT_THAT(client_.getModel(std::u16string(), model_, Device(), 0), expected);
    EXPECT_EQ(model_, other_);
}

TEST_F(GetModel, AMissingManifestAnswers12WithItsPathAndReleasesTheOldModel) {
    std::weak_ptr<QuavinModel> old = model_;
    other_.reset();
    EXPECT_THAT(load("nowhere"),
                IsStatus(MODEL_METADATA_ERROR, "Failed to open metadata file at " +
                                                   directory_.entry("nowhere\\manifest.json")));
    EXPECT_EQ(model_, nullptr);
    EXPECT_TRUE(old.expired());
}

TEST_F(GetModel, AManifestWithoutTargetsAnswers12WithTheReadersText) {
    directory_.write("manifest.json", R"({"name": "nothing"})");
    EXPECT_THAT(load(), IsStatus(MODEL_METADATA_ERROR, "No target found in root of manifest file"));
    EXPECT_EQ(model_, nullptr);
}

// Runs every overload on the package, each with the other model in the host's pointer.
template <typename Check>
void callEveryOverload(QuavinClient& client, const TempDirectory& directory,
                       const std::shared_ptr<ModelMetadata>& metadata,
                       const std::shared_ptr<QuavinModel>& other, Check check) {
    const auto type = QuavinModelType::Openvino;
    auto model = other;
    check(client.getModel(directory.text(), model, 0, type), model);
    model = other;
    check(client.getModel(directory.text(), model, Device(), 0), model);
    model = other;
    check(client.getModel(utf16(directory), model, 0, type), model);
    model = other;
    check(client.getModel(utf16(directory), model, Device(), 0), model);
    model = other;
    check(client.getModel(metadata, model, type), model);
    model = other;
    check(client.getModel(metadata, model, Device()), model);
}

TEST_F(GetModel, AFailingLoadClearsThePointerInEveryOverload) {
    takeAComponentAway();
    callEveryOverload(client_, directory_, readManifest(), other_,
                      [](const QuavinStatus& status, const auto& model) {
                          EXPECT_THAT(status, IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
                          EXPECT_EQ(model, nullptr);
                      });
}

TEST_F(GetModel, ALoadThatThrowsLeavesTheCreatedModelNotLoadedInEveryOverload) {
    breakTheTopology();
    callEveryOverload(client_, directory_, readManifest(), other_,
                      [&](const QuavinStatus& status, const auto& model) {
                          EXPECT_THAT(status, IsStatusWith(FILE_ERROR, Not(IsEmpty())));
                          ASSERT_NE(model, nullptr);
                          EXPECT_NE(model, other_);
                          EXPECT_THAT(model->predict({}, outputs_),
                                      IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
                      });
}

TEST_F(GetModel, NullMetadataAnswers7AndLeavesTheModelInPlace) {
    EXPECT_THAT(client_.getModel(nullptr, model_, Device()),
                IsStatusWith(INVALID_ARGUMENTS, Not(IsEmpty())));
    EXPECT_THAT(client_.getModel(nullptr, model_, QuavinModelType::Openvino),
                IsStatusWith(INVALID_ARGUMENTS, Not(IsEmpty())));
    EXPECT_EQ(model_, other_);
    EXPECT_EQ(registeredModels(), 0U);
}

TEST_F(GetModel, ATargetWithoutInputsAnswers12) {
    takeTheInputsAway();
    EXPECT_THAT(load(), IsStatus(MODEL_METADATA_ERROR, kNoInput));
    EXPECT_EQ(model_, nullptr);
}

TEST_F(GetModel, ATargetWithoutInputsThatTheHostMadeAnswers12AndClearsThePointer) {
    const auto metadata = std::make_shared<ModelMetadata>();
    metadata->getTargets().emplace(QuavinModelType::Openvino, ModelTarget());
    EXPECT_THAT(client_.getModel(metadata, model_, QuavinModelType::Openvino),
                IsStatus(MODEL_METADATA_ERROR, kNoInput));
    EXPECT_EQ(model_, nullptr);
}

TEST_F(GetModel, ATargetWithoutOutputsAnswers12) {
    PackageText text = describe(sumNetwork());
    text.outputs.clear();
    writeManifest(directory_, text);
    EXPECT_THAT(load(),
                IsStatus(MODEL_METADATA_ERROR, "There must be at least one defined output name"));
}

TEST_F(GetModel, AFirstInputWithoutElementsAnswers12) {
    PackageText text = describe(sumNetwork());
    text.inputs = {tensorFeature("x", {1, 0}, "float")};
    writeManifest(directory_, text);
    EXPECT_THAT(load(), IsStatus(MODEL_METADATA_ERROR, "The input shape has to be defined"));
}

TEST_F(GetModel, ATargetWithoutComponentsAnswers12) {
    PackageText text = describe(sumNetwork());
    text.components.clear();
    writeManifest(directory_, text);
    EXPECT_THAT(load(), IsStatus(MODEL_METADATA_ERROR, "No model component found"));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
