// Models loaded, unloaded and loaded again, and several models at once.

#include <atomic>
#include <filesystem>
#include <thread>

#include "integration/model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Lifecycle : public ModelTest {
protected:
    Lifecycle() { EXPECT_THAT(loadNetwork(affineNetwork()), IsOk()); }

    void removeNetworkFiles() {
        std::filesystem::remove(directory_.path() / "net.xml");
        std::filesystem::remove(directory_.path() / "net.bin");
    }
    void expectAffineNumbers() {
        ASSERT_THAT(allocateInputs(), IsOk());
        EXPECT_THAT(predictFloats({1, 2, 3, -4}), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
    }
};

TEST_F(Lifecycle, PredictAfterUnloadingAnswers11) {
    ASSERT_THAT(allocateInputs(), IsOk());
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    EXPECT_THAT(predict(), IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    EXPECT_TRUE(outputs_.empty());
}

TEST_F(Lifecycle, AllocateInputsAfterUnloadingAnswers11) {
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    EXPECT_THAT(allocateInputs(), IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    EXPECT_TRUE(inputs_.empty());
}

TEST_F(Lifecycle, UnloadingReleasesTheMetadata) {
    std::weak_ptr<ModelMetadata> metadata = model_->getMetadata();
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    EXPECT_EQ(model_->getMetadata(), nullptr);
    EXPECT_TRUE(metadata.expired());
    EXPECT_TRUE(model_->getTargetMetadata().inputs.empty());
    EXPECT_TRUE(model_->getTargetMetadata().components.empty());
}

TEST_F(Lifecycle, LoadingALoadedModelAgainDoesNotReadTheFiles) {
    const auto metadata = model_->getMetadata();
    removeNetworkFiles();
    EXPECT_THAT(model_->load(metadata), IsOk());
    expectAffineNumbers();
}

TEST_F(Lifecycle, LoadingAfterUnloadingReadsTheFiles) {
    const auto metadata = model_->getMetadata();
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    removeNetworkFiles();
    expectThrows<FileException>([&] { model_->load(metadata); }, FILE_ERROR, "File error!");
    EXPECT_THAT(model_->predict({}, outputs_),
                IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    writeNetwork(directory_, affineNetwork());
    EXPECT_THAT(model_->load(metadata), IsOk());
    expectAffineNumbers();
}

TEST_F(Lifecycle, LoadingAfterUnloadingUsesTheCurrentFiles) {
    const auto metadata = model_->getMetadata();
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    writeNetwork(directory_, halvingNetwork("f32"));  // with the same ports
    ASSERT_THAT(model_->load(metadata), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    EXPECT_THAT(predictFloats({1, 2, 3, -4}), ElementsAre(0.5F, 1.F, 1.5F, -2.F));
}

TEST_F(Lifecycle, ALoadedModelMayBeLoadedFromOtherMetadataAndKeepsItsNetwork) {
    PackageText text = describe(affineNetwork());
    text.components = {{"file", "not there"}, {"file", "not there either"}};
    writeManifest(directory_, text);
    ASSERT_THAT(model_->load(readManifest()), IsOk());
    expectAffineNumbers();
}

TEST_F(Lifecycle, AManifestMayBeReadAgainThroughTheModel) {
    ASSERT_THAT(model_->load(Filepath(directory_.entry("manifest.json"))), IsOk());
    expectAffineNumbers();
    EXPECT_THAT(model_->load(Filepath(directory_.entry("nowhere"))),
                IsStatusWith(MODEL_METADATA_ERROR, Not(IsEmpty())));
}

TEST_F(Lifecycle, LoadingFromNullMetadataAnswers7AndKeepsTheModelLoaded) {
    EXPECT_THAT(model_->load(std::shared_ptr<ModelMetadata>()),
                IsStatusWith(INVALID_ARGUMENTS, Not(IsEmpty())));
    expectAffineNumbers();
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    EXPECT_THAT(model_->load(Filepath(directory_.entry("manifest.json"))),
                IsStatusWith(INVALID_ARGUMENTS, Not(IsEmpty())));
}

TEST_F(Lifecycle, ManyCyclesOfLoadingAndUnloadingOneModelPredictTheSame) {
    const auto metadata = model_->getMetadata();
    for (int cycle = 0; cycle < 10; ++cycle) {
        expectAffineNumbers();
        ASSERT_THAT(client_.unloadModel(model_), IsOk());
        ASSERT_THAT(model_->load(metadata), IsOk());
    }
    expectAffineNumbers();
}

TEST_F(Lifecycle, AFailedLoadMayBeRepeatedOnTheSameModel) {
    removeNetworkFiles();
    EXPECT_THAT(load(), IsStatus(FILE_ERROR, "File error!"));
    ASSERT_NE(model_, nullptr);
    writeNetwork(directory_, affineNetwork());
    ASSERT_THAT(model_->load(readManifest()), IsOk());
    expectAffineNumbers();
}

TEST_F(Lifecycle, TheManagersUnloadReleasesTheModelAndItsAccount) {
    ASSERT_THAT(client_.getModel(directory_.text(), model_, Device(), 0), IsOk());
    EXPECT_THAT(client_.getModelManager().unloadModel(model_), IsOk());
    EXPECT_TRUE(client_.queryRuntimeStatus().getLoadedModels().empty());
    EXPECT_EQ(model_->getRuntimeStatus(), nullptr);
    EXPECT_THAT(predict(), IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    EXPECT_EQ(model_.use_count(), 1);
}

TEST_F(Lifecycle, SeveralModelsAtOnceDoNotDisturbEachOther) {
    const auto affine = model_;
    writePackage(directory_, halvingNetwork("f32"), "halving");
    ASSERT_THAT(load("halving"), IsOk());
    const auto halving = model_;
    writePackage(directory_, integerNetwork(), "integer");
    ASSERT_THAT(load("integer"), IsOk());
    const auto integer = model_;

    const Features x = {featureOf<float>("x", {1, 4}, DataType::FLOAT, {2, 4, 6, 8})};
    const Features n = {featureOf<std::int32_t>("x", {1, 4}, DataType::INT32, {1, 2, 3, 4})};
    for (int round = 0; round < 3; ++round) {
        Features a;
        Features h;
        Features i;
        ASSERT_THAT(affine->predict(x, a), IsOk());
        ASSERT_THAT(halving->predict(x, h), IsOk());
        ASSERT_THAT(integer->predict(n, i), IsOk());
        EXPECT_THAT(valuesOf<float>(a.at(0)), ElementsAre(4.5F, 9.F, 13.5F, 18.F));
        EXPECT_THAT(valuesOf<float>(h.at(0)), ElementsAre(1.F, 2.F, 3.F, 4.F));
        EXPECT_THAT(valuesOf<std::int32_t>(i.at(0)), ElementsAre(3, 6, 9, 12));
    }
    // Unloading one leaves the others unaffected.
    auto unloaded = halving;
    ASSERT_THAT(client_.unloadModel(unloaded), IsOk());
    Features a;
    ASSERT_THAT(affine->predict(x, a), IsOk());
    EXPECT_THAT(valuesOf<float>(a.at(0)), ElementsAre(4.5F, 9.F, 13.5F, 18.F));
}

TEST_F(Lifecycle, TwoModelsPredictOnTwoThreads) {
    const auto affine = model_;
    writePackage(directory_, halvingNetwork("f32"), "halving");
    ASSERT_THAT(load("halving"), IsOk());
    std::atomic<int> right{0};
    const auto run = [&right](QuavinModel& model, float factor, float shift) {
        auto tensor = std::make_shared<Tensor>(DataType::FLOAT, TensorShape{1, 4});
        const Features inputs = {featureOver("x", {1, 4}, DataType::FLOAT, tensor)};
        for (int call = 0; call < 300; ++call) {
            const auto value = static_cast<float>(call);
            fill<float>(*tensor, {value, value, value, value});
            Features outputs;
            if (model.predict(inputs, outputs).ok() &&
                valuesOf<float>(outputs.at(0)).at(0) == factor * value + shift) {
                ++right;
            }
        }
    };
    std::thread other([&] { run(*model_, 0.5F, 0); });
    run(*affine, 2, 0.5F);
    other.join();
    EXPECT_EQ(right, 600);
}

TEST_F(Lifecycle, OutputsMayBeDroppedOnAnotherThreadWhileTheModelPredicts) {
    ASSERT_THAT(allocateInputs(), IsOk());
    for (int round = 0; round < 50; ++round) {
        Features outputs;
        for (int call = 0; call < 8; ++call) {
            ASSERT_THAT(model_->predict(inputs_, outputs), IsOk());
        }
        std::thread dropper([old = std::move(outputs)]() mutable { old.clear(); });
        EXPECT_THAT(predictFloats({1, 2, 3, -4}), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
        dropper.join();
    }
}

TEST_F(Lifecycle, ModelsKeepPredictingAsTheLibraryIsSwitchedOffAndOn) {
    ASSERT_THAT(client_.getModel(directory_.text(), model_, Device(), 0), IsOk());
    for (int cycle = 0; cycle < 3; ++cycle) {
        QuavinClient::terminate();
        EXPECT_FALSE(QuavinClient::isInitialized());
        expectAffineNumbers();
        ASSERT_THAT(QuavinClient::init(QuavinConfig()), IsOk());
        EXPECT_EQ(&QuavinClient::instance(), &client_);
        // The registry is unchanged.
        EXPECT_EQ(client_.queryRuntimeStatus().getLoadedModels(), (std::vector{model_}));
        expectAffineNumbers();
    }
}

TEST_F(Lifecycle, ModelsLoadAfterTheLibraryIsSwitchedOffAndOn) {
    QuavinClient::terminate();
    EXPECT_THAT(load(), IsStatusWith(NOT_INITIALIZED, Not(IsEmpty())));
    ASSERT_THAT(QuavinClient::init(QuavinConfig()), IsOk());
    ASSERT_THAT(load(), IsOk());
    expectAffineNumbers();
}

}  // namespace
}  // namespace VelmoraQuavin::testing
