// What a host sees of predict(): which features it needs, and which it returns.

#include "integration/model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class Prediction : public ModelTest {};

TEST_F(Prediction, APlainPackageYieldsTheNetworksNumbers) {
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    fill<float>(inputs_.at(0), {1, 2, 3, -4});
    ASSERT_THAT(predict(), IsOk());
    ASSERT_EQ(outputs_.size(), 1U);
    // 2 x + (0.5, 1, 1.5, 2)
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
}

TEST_F(Prediction, OutputsAreTensorFeaturesWithTheManifestsDescriptorAndTheNetworksShape) {
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    ASSERT_THAT(predict(), IsOk());
    const QuavinFeature& output = *outputs_.at(0);
    EXPECT_EQ(output.type(), QuavinFeatureType::TENSOR);
    EXPECT_EQ(output.featureDescriptor().name(), "y");
    const auto tensor = output.asTensor();
    EXPECT_EQ(tensor->shape().shapeVector(), (std::vector<int64>{1, 4}));
    EXPECT_EQ(tensor->dataType(), DataType::FLOAT);
    EXPECT_EQ(tensor->bytes(), 16);
}

TEST_F(Prediction, MatchesInputsByNameWhateverTheirOrderInTheManifest) {
    const IrNetwork network = arithmeticNetwork();
    writeNetwork(directory_, network);
    PackageText text = describe(network);
    std::swap(text.inputs[0], text.inputs[1]);
    writeManifest(directory_, text);
    ASSERT_THAT(load(), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    ASSERT_EQ(inputs_.at(0)->featureDescriptor().name(), "right");
    fill<float>(named(inputs_, "left"), {5, 7});
    fill<float>(named(inputs_, "right"), {2, 3});
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(named(outputs_, "difference")), ElementsAre(3.F, 4.F));
    EXPECT_THAT(valuesOf<float>(named(outputs_, "product")), ElementsAre(10.F, 21.F));
    EXPECT_THAT(valuesOf<float>(named(outputs_, "sum")), ElementsAre(7.F, 10.F));
}

TEST_F(Prediction, OutputsFollowTheTargetsOrderNotTheNetworks) {
    const IrNetwork network = arithmeticNetwork();
    writeNetwork(directory_, network);
    PackageText text = describe(network);
    // Neither the order of the file (sum, difference, product) nor that of the names.
    text.outputs = {tensorFeature("product", {1, 2}, "float"),
                    tensorFeature("sum", {1, 2}, "float"),
                    tensorFeature("difference", {1, 2}, "float")};
    writeManifest(directory_, text);
    ASSERT_THAT(load(), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    fill<float>(named(inputs_, "left"), {5, 7});
    fill<float>(named(inputs_, "right"), {2, 3});
    ASSERT_THAT(predict(), IsOk());
    ASSERT_EQ(outputs_.size(), 3U);
    EXPECT_THAT(valuesOf<float>(outputs_[0]), ElementsAre(10.F, 21.F));
    EXPECT_THAT(valuesOf<float>(outputs_[1]), ElementsAre(7.F, 10.F));
    EXPECT_THAT(valuesOf<float>(outputs_[2]), ElementsAre(3.F, 4.F));
}

TEST_F(Prediction, ReturnsOnlyTheOutputsThatTheTargetDeclares) {
    const IrNetwork network = arithmeticNetwork();
    writeNetwork(directory_, network);
    PackageText text = describe(network);
    text.outputs = {tensorFeature("product", {1, 2}, "float")};
    writeManifest(directory_, text);
    ASSERT_THAT(load(), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    fill<float>(named(inputs_, "left"), {5, 7});
    fill<float>(named(inputs_, "right"), {2, 3});
    ASSERT_THAT(predict(), IsOk());
    ASSERT_EQ(outputs_.size(), 1U);
    EXPECT_THAT(valuesOf<float>(outputs_[0]), ElementsAre(10.F, 21.F));
}

TEST_F(Prediction, AppendsItsOutputsAfterExistingEntries) {
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    const auto mine = featureOf<float>("mine", {1}, DataType::FLOAT, {9});
    outputs_ = {mine, nullptr};
    ASSERT_THAT(model_->predict(inputs_, outputs_), IsOk());
    ASSERT_EQ(outputs_.size(), 3U);
    EXPECT_EQ(outputs_[0], mine);
    EXPECT_EQ(outputs_[1], nullptr);
    EXPECT_EQ(outputs_[2]->featureDescriptor().name(), "y");
    ASSERT_THAT(model_->predict(inputs_, outputs_), IsOk());
    EXPECT_EQ(outputs_.size(), 4U);
}

TEST_F(Prediction, IgnoresFeaturesThatTheNetworkDoesNotHave) {
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    fill<float>(inputs_.at(0), {1, 2, 3, -4});
    inputs_.insert(inputs_.begin(), featureOf<float>("X", {4}, DataType::FLOAT, {7, 7, 7, 7}));
    inputs_.push_back(std::make_shared<QuavinFeatureString>(
        ModelFeatureDescriptor(QuavinFeatureType::STRING), "a text"));
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
}

TEST_F(Prediction, SkipsNullFeatures) {
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    fill<float>(inputs_.at(0), {1, 2, 3, -4});
    inputs_.insert(inputs_.begin(), nullptr);
    inputs_.push_back(nullptr);
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
}

TEST_F(Prediction, UsesTheFirstOfSeveralFeaturesWithTheSameName) {
    ASSERT_THAT(loadNetwork(sumNetwork()), IsOk());
    inputs_ = {featureOf<float>("x", {1, 2}, DataType::FLOAT, {1, 2}),
               featureOf<float>("x", {1, 2}, DataType::FLOAT, {10, 20})};
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.F, 4.F));
}

TEST_F(Prediction, AMissingInputFeatureAnswers19AndReturnsNoOutputs) {
    ASSERT_THAT(loadNetwork(arithmeticNetwork()), IsOk());
    inputs_ = {featureOf<float>("left", {1, 2}, DataType::FLOAT, {1, 2})};
    EXPECT_THAT(predict(), IsStatus(EMPTY_INPUT_DESCRIPTOR, "Empty Input Feature Descriptor"));
    EXPECT_TRUE(outputs_.empty());
}

TEST_F(Prediction, NamesAreComparedByteForByte) {
    ASSERT_THAT(loadNetwork(sumNetwork()), IsOk());
    for (const std::string name : {"X", "x ", "", "xx"}) {
        inputs_ = {featureOf<float>(name, {1, 2}, DataType::FLOAT, {1, 2})};
        EXPECT_THAT(predict(), IsStatus(EMPTY_INPUT_DESCRIPTOR, "Empty Input Feature Descriptor"));
    }
}

TEST_F(Prediction, OnlyNullFeaturesAnswer19) {
    ASSERT_THAT(loadNetwork(sumNetwork()), IsOk());
    inputs_ = {nullptr, nullptr};
    EXPECT_THAT(predict(), IsStatus(EMPTY_INPUT_DESCRIPTOR, "Empty Input Feature Descriptor"));
}

TEST_F(Prediction, AnOutputMissingFromTheNetworkAnswers12NamingIt) {
    const IrNetwork network = affineNetwork();
    writeNetwork(directory_, network);
    PackageText text = describe(network);
    text.outputs.push_back(tensorFeature("confidence", {1, 4}, "float"));
    writeManifest(directory_, text);
    ASSERT_THAT(load(), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    EXPECT_THAT(predict(), IsStatusWith(MODEL_METADATA_ERROR, HasSubstr("\"confidence\"")));
    EXPECT_TRUE(outputs_.empty());
}

TEST_F(Prediction, TheIntegerArgumentHasNoEffect) {
    ASSERT_THAT(loadNetwork(sumNetwork()), IsOk());
    inputs_ = {featureOf<float>("x", {1, 2}, DataType::FLOAT, {1, 2})};
    for (const int option : {0, 1, -1, 4711}) {
        outputs_.clear();
        ASSERT_THAT(model_->predict(inputs_, outputs_, option), IsOk());
        EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.F, 4.F));
    }
}

TEST_F(Prediction, TheSameFeatureMayFeedSeveralModels) {
    ASSERT_THAT(loadNetwork(sumNetwork()), IsOk());
    const auto first = model_;
    model_.reset();
    ASSERT_THAT(load(), IsOk());
    inputs_ = {featureOf<float>("x", {1, 2}, DataType::FLOAT, {3, 4})};
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(6.F, 8.F));
    outputs_.clear();
    ASSERT_THAT(first->predict(inputs_, outputs_), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(6.F, 8.F));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
