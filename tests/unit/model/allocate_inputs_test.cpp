#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "quavin/model.h"
#include "support/recording_model.h"
#include "support/status_matcher.h"
#include "target_fixture.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::IsOk;
using testing::IsStatus;
using testing::RecordingModel;

constexpr const char* kUndefinedType = "Undefined feature type for allocating inputs";

template <typename Class>
bool isOf(const std::shared_ptr<QuavinFeature>& feature) {
    return dynamic_cast<Class*>(feature.get()) != nullptr;
}

class AllocateInputsTest : public ::testing::Test {
protected:
    QuavinStatus allocate(std::vector<ModelFeatureDescriptor> inputs) {
        ModelTarget target = completeTarget();
        target.inputs = std::move(inputs);
        // Loading may refuse the inputs, but it keeps the metadata, which is all this needs.
        try {
            model_.load(metadataOf(std::move(target)));
        } catch (const InvalidOperationException&) {
        }
        return model_.allocateInputs(features_);
    }
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& feature : features_) {
            names.push_back(feature->featureDescriptor().name().str());
        }
        return names;
    }

    RecordingModel model_;
    RecordingModel::Features features_;
};

TEST_F(AllocateInputsTest, CreatesAFalseBool) {
    EXPECT_THAT(allocate({descriptorOf(QuavinFeatureType::BOOL)}), IsOk());
    ASSERT_EQ(features_.size(), 1U);
    EXPECT_TRUE(isOf<QuavinFeatureBool>(features_[0]));
    EXPECT_FALSE(features_[0]->asBool());
}

TEST_F(AllocateInputsTest, CreatesAZeroByte) {
    EXPECT_THAT(allocate({descriptorOf(QuavinFeatureType::UINT8)}), IsOk());
    ASSERT_EQ(features_.size(), 1U);
    EXPECT_TRUE(isOf<QuavinFeatureUInt8>(features_[0]));
    EXPECT_EQ(features_[0]->asUInt8(), 0);
}

TEST_F(AllocateInputsTest, CreatesAZeroInteger) {
    EXPECT_THAT(allocate({descriptorOf(QuavinFeatureType::INT64)}), IsOk());
    ASSERT_EQ(features_.size(), 1U);
    EXPECT_TRUE(isOf<QuavinFeatureInt64>(features_[0]));
    EXPECT_EQ(features_[0]->asInt64(), 0);
}

TEST_F(AllocateInputsTest, CreatesAZeroDouble) {
    EXPECT_THAT(allocate({descriptorOf(QuavinFeatureType::DOUBLE)}), IsOk());
    ASSERT_EQ(features_.size(), 1U);
    EXPECT_TRUE(isOf<QuavinFeatureDouble>(features_[0]));
    EXPECT_EQ(features_[0]->asDouble(), 0.0);
}

TEST_F(AllocateInputsTest, CreatesAnEmptyString) {
    EXPECT_THAT(allocate({descriptorOf(QuavinFeatureType::STRING)}), IsOk());
    ASSERT_EQ(features_.size(), 1U);
    EXPECT_TRUE(isOf<QuavinFeatureString>(features_[0]));
    EXPECT_TRUE(features_[0]->asString().empty());
}

TEST_F(AllocateInputsTest, CreatesAZeroFilledTensorForAFixedShape) {
    EXPECT_THAT(allocate({tensorOf(TensorShape(1, 2, 3))}), IsOk());
    ASSERT_EQ(features_.size(), 1U);
    EXPECT_TRUE(isOf<QuavinFeatureTensor>(features_[0]));
    const std::shared_ptr<ITensor> tensor = features_[0]->asTensor();
    EXPECT_EQ(tensor->dataType(), DataType::FLOAT);
    EXPECT_THAT(tensor->shape().shapeVector(), ElementsAre(1, 2, 3));
    ASSERT_EQ(tensor->bytes(), 24);
    ASSERT_NE(tensor->buffer(), nullptr);
    EXPECT_EQ(std::vector<int>(tensor->buffer(), tensor->buffer() + 24), std::vector<int>(24, 0));
}

TEST_F(AllocateInputsTest, AVariableTensorHasNoShapeOrMemoryUntilResized) {
    EXPECT_THAT(allocate({tensorOf(TensorShape(1, -1, 4))}), IsOk());
    ASSERT_EQ(features_.size(), 1U);
    EXPECT_TRUE(isOf<QuavinFeatureTensor>(features_[0]));
    const std::shared_ptr<ITensor> tensor = features_[0]->asTensor();
    ASSERT_NE(tensor, nullptr);
    EXPECT_EQ(tensor->dataType(), DataType::FLOAT);
    EXPECT_THAT(tensor->shape().shapeVector(), IsEmpty());
    EXPECT_EQ(tensor->buffer(), nullptr);

    EXPECT_THAT(tensor->resize(TensorShape(1, 5, 4)), IsOk());
    EXPECT_EQ(tensor->bytes(), 80);
    EXPECT_NE(tensor->buffer(), nullptr);
}

TEST_F(AllocateInputsTest, KeepsTheOrderAndTheDescriptors) {
    EXPECT_THAT(allocate({descriptorOf(QuavinFeatureType::INT64, "first"),
                          tensorOf(TensorShape(2), "second"),
                          descriptorOf(QuavinFeatureType::BOOL, "third")}),
                IsOk());
    EXPECT_THAT(names(), ElementsAre("first", "second", "third"));
    EXPECT_TRUE(isOf<QuavinFeatureInt64>(features_[0]));
    EXPECT_TRUE(isOf<QuavinFeatureTensor>(features_[1]));
    EXPECT_TRUE(isOf<QuavinFeatureBool>(features_[2]));
    EXPECT_TRUE(features_[1]->featureDescriptor().required());
}

TEST_F(AllocateInputsTest, AppendsToTheVector) {
    const auto held =
        std::make_shared<QuavinFeatureBool>(descriptorOf(QuavinFeatureType::BOOL, "held"));
    features_ = {held, nullptr};
    EXPECT_THAT(allocate({descriptorOf(QuavinFeatureType::INT64, "new")}), IsOk());
    ASSERT_EQ(features_.size(), 3U);
    EXPECT_EQ(features_[0], held);
    EXPECT_EQ(features_[1], nullptr);
    EXPECT_EQ(features_[2]->featureDescriptor().name(), "new");
}

TEST_F(AllocateInputsTest, EveryCallCreatesNewFeatures) {
    allocate({tensorOf(TensorShape(2))});
    EXPECT_THAT(model_.allocateInputs(features_), IsOk());
    ASSERT_EQ(features_.size(), 2U);
    EXPECT_NE(features_[0], features_[1]);
    EXPECT_NE(features_[0]->asTensor(), features_[1]->asTensor());
}

TEST_F(AllocateInputsTest, AnEmptyListAddsNothing) {
    EXPECT_THAT(allocate({}), IsOk());
    EXPECT_THAT(features_, IsEmpty());
}

TEST_F(AllocateInputsTest, AddsNothingWithoutATargetOfTheModelsType) {
    model_.load(metadataOf(completeTarget(), QuavinModelType::WinML));
    EXPECT_THAT(model_.allocateInputs(features_), IsOk());
    EXPECT_THAT(features_, IsEmpty());
}

TEST_F(AllocateInputsTest, StopsAtAnImageAndKeepsEarlierFeatures) {
    EXPECT_THAT(allocate({descriptorOf(QuavinFeatureType::INT64, "first"),
                          descriptorOf(QuavinFeatureType::BOOL, "second"),
                          descriptorOf(QuavinFeatureType::IMAGE, "picture"),
                          descriptorOf(QuavinFeatureType::BOOL, "after")}),
                IsStatus(INVALID_TYPE, kUndefinedType));
    EXPECT_THAT(names(), ElementsAre("first", "second"));
}

TEST_F(AllocateInputsTest, StopsAtAnUnsetType) {
    EXPECT_THAT(allocate({descriptorOf(static_cast<QuavinFeatureType>(7))}),
                IsStatus(INVALID_TYPE, kUndefinedType));
    EXPECT_THAT(allocate({descriptorOf(static_cast<QuavinFeatureType>(-1))}),
                IsStatus(INVALID_TYPE, kUndefinedType));
    EXPECT_THAT(features_, IsEmpty());
}

TEST_F(AllocateInputsTest, AnUnallocatableShapeReturnsAStatus) {
    EXPECT_THAT(allocate({descriptorOf(QuavinFeatureType::INT64, "first"),
                          tensorOf(TensorShape(int64{1} << 62), "huge")}),
                IsStatus(FAILURE, std::bad_alloc().what()));
    EXPECT_THAT(names(), ElementsAre("first"));
}

TEST_F(AllocateInputsTest, ANegativeDimensionReturnsAStatus) {
    EXPECT_THAT(allocate({tensorOf(TensorShape(2, -3))}),
                IsStatus(FAILURE, std::bad_alloc().what()));
    EXPECT_THAT(features_, IsEmpty());
}

TEST_F(AllocateInputsTest, ReportsNoModelLoadedWithoutMetadata) {
    EXPECT_THAT(model_.allocateInputs(features_),
                IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    model_.load(metadataOf(completeTarget()));
    model_.releaseMetadata();
    EXPECT_THAT(model_.allocateInputs(features_),
                IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    EXPECT_THAT(features_, IsEmpty());
}

}  // namespace
}  // namespace VelmoraQuavin
