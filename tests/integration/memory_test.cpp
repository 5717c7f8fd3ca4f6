// Nothing is copied: the engine reads the host's tensors in place, and outputs expose the memory it
// wrote.

#include <algorithm>
#include <array>

#include "integration/model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;

const unsigned char* addressOf(const std::shared_ptr<QuavinFeature>& feature) {
    return feature->asTensor()->buffer();
}

class Memory : public ModelTest {
protected:
    Memory() { EXPECT_THAT(loadNetwork(affineNetwork()), IsOk()); }
};

TEST_F(Memory, AnInputIsReadAgainByEveryPrediction) {
    ASSERT_THAT(allocateInputs(), IsOk());
    const unsigned char* const address = addressOf(inputs_.at(0));
    EXPECT_THAT(predictFloats({0, 0, 0, 0}), ElementsAre(0.5F, 1.F, 1.5F, 2.F));
    EXPECT_THAT(predictFloats({1, 0, 0, 0}), ElementsAre(2.5F, 1.F, 1.5F, 2.F));
    EXPECT_THAT(predictFloats({1, 2, 3, -4}), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
    EXPECT_EQ(addressOf(inputs_.at(0)), address);
}

TEST_F(Memory, HostMemoryIsReadInPlaceThroughAWrappingTensor) {
    std::array<float, 4> samples = {1, 2, 3, -4};
    auto* const bytes = reinterpret_cast<unsigned char*>(samples.data());
    inputs_ = {featureOver("x", {1, 4}, DataType::FLOAT,
                           std::make_shared<BufferWrappedTensor>(DataType::FLOAT, TensorShape{1, 4},
                                                                 bytes, sizeof samples))};
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
    samples = {10, 20, 30, 40};
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(20.5F, 41.F, 61.5F, 82.F));
    EXPECT_THAT(samples, ElementsAre(10.F, 20.F, 30.F, 40.F));  // and is not written
}

TEST_F(Memory, AnInputNeedsNoAlignmentBeyondItsElements) {
    const std::array<float, 4> samples = {1, 2, 3, -4};
    alignas(64) std::array<float, 8> memory{};
    for (std::size_t offset = 0; offset < 5; ++offset) {
        std::copy(samples.begin(), samples.end(), memory.begin() + offset);
        auto* const bytes = reinterpret_cast<unsigned char*>(&memory.at(offset));
        inputs_ = {featureOver("x", {1, 4}, DataType::FLOAT,
                               std::make_shared<BufferWrappedTensor>(
                                   DataType::FLOAT, TensorShape{1, 4}, bytes, sizeof samples))};
        ASSERT_THAT(predict(), IsOk());
        EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
    }
}

TEST_F(Memory, AnInputsMemoryMayChangeBetweenPredictions) {
    for (const float value : {1.F, 2.F, 3.F}) {
        // New memory every time; the old memory is freed.
        inputs_ = {featureOf<float>("x", {1, 4}, DataType::FLOAT, {value, value, value, value})};
        ASSERT_THAT(predict(), IsOk());
        EXPECT_THAT(valuesOf<float>(outputs_.at(0)),
                    ElementsAre(2 * value + 0.5F, 2 * value + 1, 2 * value + 1.5F, 2 * value + 2));
    }
}

TEST_F(Memory, AnOutputIsWritableAndItsMemoryIsNotShared) {
    ASSERT_THAT(allocateInputs(), IsOk());
    predictFloats({0, 0, 0, 0});
    const auto output = outputs_.at(0);
    fill<float>(output, {7, 7, 7, 7});
    EXPECT_THAT(valuesOf<float>(output), ElementsAre(7.F, 7.F, 7.F, 7.F));
    EXPECT_THAT(predictFloats({0, 0, 0, 0}), ElementsAre(0.5F, 1.F, 1.5F, 2.F));
    EXPECT_THAT(valuesOf<float>(output), ElementsAre(7.F, 7.F, 7.F, 7.F));
}

TEST_F(Memory, EarlierOutputsAreUntouchedByLaterPredictions) {
    ASSERT_THAT(allocateInputs(), IsOk());
    Features kept;
    for (const float value : {0.F, 1.F, 2.F, 3.F, 4.F}) {
        predictFloats({value, value, value, value});
        kept.push_back(outputs_.at(0));
    }
    for (std::size_t i = 0; i < kept.size(); ++i) {
        const auto value = static_cast<float>(i);
        EXPECT_THAT(valuesOf<float>(kept[i]),
                    ElementsAre(2 * value + 0.5F, 2 * value + 1, 2 * value + 1.5F, 2 * value + 2));
        for (std::size_t other = 0; other < i; ++other) {
            EXPECT_NE(addressOf(kept[i]), addressOf(kept[other]));
        }
    }
}

TEST_F(Memory, AnOutputOutlivesTheModel) {
    ASSERT_THAT(allocateInputs(), IsOk());
    predictFloats({1, 2, 3, -4});
    const auto output = outputs_.at(0);
    outputs_.clear();
    std::weak_ptr<QuavinModel> gone = model_;
    model_.reset();
    ASSERT_TRUE(gone.expired());
    EXPECT_THAT(valuesOf<float>(output), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
    fill<float>(output, {1, 1, 1, 1});
    EXPECT_THAT(valuesOf<float>(output), ElementsAre(1.F, 1.F, 1.F, 1.F));
}

TEST_F(Memory, AHeldTensorOutlivesItsOutputFeature) {
    ASSERT_THAT(allocateInputs(), IsOk());
    predictFloats({1, 2, 3, -4});
    const std::shared_ptr<const ITensor> tensor = outputs_.at(0)->asTensor();
    outputs_.clear();
    predictFloats({0, 0, 0, 0});
    const auto* const values = reinterpret_cast<const float*>(tensor->buffer());
    EXPECT_EQ(std::vector<float>(values, values + 4), (std::vector<float>{2.5F, 5, 7.5F, -6}));
}

TEST_F(Memory, AnOutputSurvivesUnloadingTheModel) {
    ASSERT_THAT(allocateInputs(), IsOk());
    predictFloats({1, 2, 3, -4});
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
}

#ifdef QUAVIN_ENGINE_IS_ADAPTER  // others hold an output for one more call
TEST_F(Memory, ADroppedOutputsMemoryIsReused) {
    ASSERT_THAT(allocateInputs(), IsOk());
    predictFloats({0, 0, 0, 0});
    const unsigned char* const address = addressOf(outputs_.at(0));
    for (int call = 0; call < 5; ++call) {
        predictFloats({1, 2, 3, -4});  // drops the previous call's outputs
        EXPECT_EQ(addressOf(outputs_.at(0)), address);
        EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
    }
}
#endif

TEST_F(Memory, TwoBlocksAlternateIfTheOldOutputIsDroppedAfterTheNewOne) {
    ASSERT_THAT(allocateInputs(), IsOk());
    const auto keepUntilTheNext = [&] {
        Features fresh;
        EXPECT_THAT(model_->predict(inputs_, fresh), IsOk());
        outputs_.swap(fresh);
        return addressOf(outputs_.at(0));
    };
    const unsigned char* const first = keepUntilTheNext();
    const unsigned char* const second = keepUntilTheNext();
    EXPECT_NE(first, second);
    EXPECT_EQ(keepUntilTheNext(), first);
    EXPECT_EQ(keepUntilTheNext(), second);
}

#ifdef QUAVIN_ENGINE_IS_ADAPTER  // as above
TEST_F(Memory, OutputMemoryOfARefusedPredictionIsNotLost) {
    ASSERT_THAT(allocateInputs(), IsOk());
    predictFloats({1, 2, 3, -4});
    const unsigned char* const address = addressOf(outputs_.at(0));
    outputs_.clear();
    const Features wrong = {featureOf<std::int32_t>("x", {1, 4}, DataType::INT32, {1, 2, 3, 4})};
    for (int call = 0; call < 3; ++call) {
        EXPECT_THROW(model_->predict(wrong, outputs_), MLFrameworkException);
    }
    predictFloats({1, 2, 3, -4});
    EXPECT_EQ(addressOf(outputs_.at(0)), address);
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
}
#endif

TEST_F(Memory, AnOutputMayFeedTheNextPrediction) {
    ASSERT_THAT(allocateInputs(), IsOk());
    predictFloats({1, 2, 3, -4});
    const auto first = outputs_.at(0);
    inputs_ = {featureOver("x", {1, 4}, DataType::FLOAT, first->asTensor())};
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(5.5F, 11.F, 16.5F, -10.F));
    EXPECT_THAT(valuesOf<float>(first), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
}

TEST_F(Memory, AnOutputTensorIsNeverResized) {
    ASSERT_THAT(allocateInputs(), IsOk());
    predictFloats({1, 2, 3, -4});
    ITensor& tensor = *outputs_.at(0)->asTensor();
    for (const TensorShape& shape : {TensorShape{1, 4}, TensorShape{4}, TensorShape{2, 8}}) {
        EXPECT_THAT(tensor.resize(shape), IsStatus(FAILURE, "Tensor resizing not allowed"));
    }
    EXPECT_EQ(tensor.shape().shapeVector(), (std::vector<int64>{1, 4}));
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
