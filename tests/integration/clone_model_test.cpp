// Models that share one compiled network.

#include <gmock/gmock.h>

#include <algorithm>
#include <future>
#include <random>

#include "integration/model_test.h"
#include "support/recording_model.h"
#include "support/secured_file.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;

// y = 2 x + (0.5, 1, 1.5, 2)
std::vector<float> affineOf(const std::vector<float>& x) {
    return {2 * x[0] + 0.5F, 2 * x[1] + 1, 2 * x[2] + 1.5F, 2 * x[3] + 2};
}

// Predicts with the affine network on its own inputs; returns how many results were wrong.
int wrongPredictions(const std::shared_ptr<QuavinModel>& model, int count, int seed) {
    Features inputs;
    if (!model->allocateInputs(inputs).ok()) {
        return count;
    }
    int wrong = 0;
    for (int i = 0; i < count; ++i) {
        // Small integers, so that the sums are exact.
        const auto value = static_cast<float>((seed * 1000 + i) % 4096);
        const std::vector<float> x = {value, -value, value + 1, 1};
        fill(inputs.at(0), x);
        Features outputs;
        const bool right =
            model->predict(inputs, outputs).ok() && valuesOf<float>(outputs.at(0)) == affineOf(x);
        wrong += right ? 0 : 1;
    }
    return wrong;
}

class CloneModel : public ModelTest {
protected:
    void SetUp() override { ASSERT_THAT(loadNetwork(affineNetwork()), IsOk()); }

    std::shared_ptr<QuavinModel> cloned() {
        std::shared_ptr<QuavinModel> clone;
        EXPECT_THAT(client_.cloneModel(model_, clone), IsOk());
        return clone;
    }
};

TEST_F(CloneModel, GivesAModelThatPredictsTheSame) {
    const auto clone = cloned();
    ASSERT_NE(clone, nullptr);
    EXPECT_NE(clone, model_);
    EXPECT_EQ(wrongPredictions(clone, 3, 1), 0);
    EXPECT_EQ(wrongPredictions(model_, 3, 2), 0);
}

TEST_F(CloneModel, GivesTheSameNameTypeAndTarget) {
    const auto clone = cloned();
    EXPECT_EQ(clone->getName(), model_->getName());
    EXPECT_EQ(clone->getModelType(), model_->getModelType());
    EXPECT_NE(clone->getMetadata(), model_->getMetadata());
    EXPECT_EQ(clone->getTargetMetadata().inputs.size(), 1U);
}

TEST_F(CloneModel, GivesAModelThatIsNotRegistered) {
    ASSERT_THAT(client_.getModel(directory_.text(), model_, Device(), 0), IsOk());
    const auto clone = cloned();
    EXPECT_THAT(client_.queryRuntimeStatus().getLoadedModels(), ElementsAre(model_));
    EXPECT_EQ(clone->getRuntimeStatus(), nullptr);
}

TEST_F(CloneModel, ReportsTheEngineOfTheOriginal) {
    EngineOptions options;
    options.threads = 1;
    ASSERT_THAT(client_.getModel(directory_.text(), model_, 0, QuavinModelType::Openvino, options),
                IsOk());
    EngineInfo original;
    EngineInfo info;
    ASSERT_THAT(model_->getEngineInfo(original), IsOk());
    ASSERT_THAT(cloned()->getEngineInfo(info), IsOk());
    EXPECT_EQ(info.threads, original.threads);
    EXPECT_EQ(info.precision, original.precision);
    EXPECT_EQ(info.deviceName, original.deviceName);
}

TEST_F(CloneModel, OutlivesTheOriginal) {
    const auto clone = cloned();
    model_.reset();
    EXPECT_EQ(wrongPredictions(clone, 3, 1), 0);
}

TEST_F(CloneModel, OutlivesAnUnloadedOriginal) {
    const auto clone = cloned();
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    EXPECT_EQ(wrongPredictions(clone, 3, 1), 0);
    Features outputs;
    EXPECT_THAT(model_->predict({}, outputs),
                IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
}

TEST_F(CloneModel, LeavesTheOriginalLoadedWhenItIsUnloaded) {
    auto clone = cloned();
    ASSERT_THAT(client_.unloadModel(clone), IsOk());
    Features outputs;
    EXPECT_THAT(clone->predict({}, outputs),
                IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    clone.reset();
    EXPECT_EQ(wrongPredictions(model_, 3, 1), 0);
}

TEST_F(CloneModel, OfACloneWorksAfterBothAreGone) {
    auto first = cloned();
    std::shared_ptr<QuavinModel> second;
    ASSERT_THAT(client_.cloneModel(first, second), IsOk());
    first.reset();
    model_.reset();
    EXPECT_EQ(wrongPredictions(second, 3, 1), 0);
}

TEST_F(CloneModel, MayReplaceThePointerToTheOriginal) {
    ASSERT_THAT(client_.cloneModel(model_, model_), IsOk());
    EXPECT_EQ(wrongPredictions(model_, 3, 1), 0);
}

TEST_F(CloneModel, KeepsItsOutputsAfterAllModelsAreGone) {
    auto clone = cloned();
    Features inputs;
    Features outputs;
    ASSERT_THAT(clone->allocateInputs(inputs), IsOk());
    fill(inputs.at(0), std::vector<float>{1, 2, 3, 4});
    ASSERT_THAT(clone->predict(inputs, outputs), IsOk());
    clone.reset();
    model_.reset();
    EXPECT_EQ(valuesOf<float>(outputs.at(0)), affineOf({1, 2, 3, 4}));
}

TEST_F(CloneModel, CanBeLoadedAgain) {
    const auto clone = cloned();
    ASSERT_THAT(clone->load(readManifest()), IsOk());
    EXPECT_EQ(wrongPredictions(clone, 3, 1), 0);
    EXPECT_EQ(wrongPredictions(model_, 3, 2), 0);
}

TEST_F(CloneModel, IsNotDisturbedByInputsOfAnotherPrecision) {
    const auto clone = cloned();
    Features outputs;
    const auto bytes = featureOf<std::int8_t>("x", {1, 4}, DataType::INT8, {1, 2, 3, 4});
    EXPECT_THROW((void)clone->predict({bytes}, outputs), MLFrameworkException);
    EXPECT_EQ(wrongPredictions(model_, 3, 1), 0);
    EXPECT_EQ(wrongPredictions(clone, 3, 2), 0);
}

TEST_F(CloneModel, OfAModelLoadedAgainForAnotherPrecisionTakesThatPrecision) {
    Features outputs;
    const auto bytes = featureOf<std::int8_t>("x", {1, 4}, DataType::INT8, {1, 2, 3, 4});
    EXPECT_THROW((void)model_->predict({bytes}, outputs), MLFrameworkException);
    const auto before = cloned();
    ASSERT_THAT(model_->load(model_->getMetadata()), IsOk());
    ASSERT_THAT(cloned()->predict({bytes}, outputs), IsOk());
    EXPECT_EQ(valuesOf<float>(outputs.at(0)), affineOf({1, 2, 3, 4}));
    EXPECT_EQ(wrongPredictions(before, 3, 1), 0);
}

TEST_F(CloneModel, OfASecuredPackagePredicts) {
    writeSecuredPackage(directory_, affineNetwork(), countingKey());
    const auto metadata = readManifest();
    for (ModelComponent& component :
         metadata->getTargets().at(QuavinModelType::Openvino).components) {
        component.setCryptoKey(countingKey().data());
    }
    ASSERT_THAT(client_.getModel(metadata, model_, QuavinModelType::Openvino), IsOk());
    const auto clone = cloned();
    model_.reset();
    EXPECT_EQ(wrongPredictions(clone, 3, 1), 0);
}

TEST_F(CloneModel, OfNothingOrAnUnloadedModelIsRefused) {
    const auto kept = cloned();
    auto clone = kept;
    const auto refused = IsStatus(MODEL_NOT_LOADED, "There is no model loaded");
    EXPECT_THAT(client_.cloneModel(nullptr, clone), refused);
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    EXPECT_THAT(client_.cloneModel(model_, clone), refused);
    EXPECT_EQ(clone, kept);
}

TEST_F(CloneModel, OfAHostsOwnModelIsRefused) {
    const auto own = std::make_shared<RecordingModel>();
    ASSERT_THAT(own->load(readManifest()), IsOk());
    std::shared_ptr<QuavinModel> clone;
    EXPECT_THAT(client_.cloneModel(own, clone), IsStatus(FAILURE, "The model cannot be cloned"));
    EXPECT_EQ(clone, nullptr);
}

TEST_F(CloneModel, WhileTheLibraryIsOffIsRefused) {
    QuavinClient::terminate();
    std::shared_ptr<QuavinModel> clone;
    const QuavinStatus status = client_.cloneModel(model_, clone);
    ASSERT_THAT(QuavinClient::init(QuavinConfig()), IsOk());
    EXPECT_THAT(status, IsStatus(NOT_INITIALIZED,
                                 "Trying to use quavin client before the sdk was initialized!"));
    EXPECT_EQ(clone, nullptr);
}

TEST_F(CloneModel, PredictsInParallelWithSevenOthers) {
    constexpr int kClones = 8;
    constexpr int kPredictions = 10000 / kClones;
    EngineOptions options;
    options.hint = EngineOptions::Hint::Throughput;
    ASSERT_THAT(client_.getModel(directory_.text(), model_, 0, QuavinModelType::Openvino, options),
                IsOk());
    std::vector<std::future<int>> wrong;
    for (int i = 0; i < kClones; ++i) {
        wrong.push_back(
            std::async(std::launch::async, wrongPredictions, cloned(), kPredictions, i));
    }
    for (std::future<int>& count : wrong) {
        EXPECT_EQ(count.get(), 0);
    }
}

TEST_F(CloneModel, MayBeMadeAndDestroyedWhileOthersPredict) {
    auto predictions = std::async(std::launch::async, wrongPredictions, model_, 300, 1);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(wrongPredictions(cloned(), 3, i), 0);
    }
    EXPECT_EQ(predictions.get(), 0);
}

TEST_F(CloneModel, CanBeDestroyedInAnyOrder) {
    std::mt19937 random(20);  // NOLINT(cert-msc51-cpp): the same orders in every run
    for (int round = 0; round < 5; ++round) {
        ASSERT_THAT(load(), IsOk());
        std::vector<std::shared_ptr<QuavinModel>> models{model_};
        for (int i = 0; i < 4; ++i) {
            std::shared_ptr<QuavinModel> clone;
            ASSERT_THAT(client_.cloneModel(models.back(), clone), IsOk());
            models.push_back(clone);
        }
        model_.reset();
        std::shuffle(models.begin(), models.end(), random);
        while (!models.empty()) {
            EXPECT_EQ(wrongPredictions(models.back(), 1, round), 0);
            if (models.size() % 2 == 0) {
                EXPECT_THAT(client_.unloadModel(models.back()), IsOk());
            }
            models.pop_back();
        }
    }
}

}  // namespace
}  // namespace VelmoraQuavin::testing
