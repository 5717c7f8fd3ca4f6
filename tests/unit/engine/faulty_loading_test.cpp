// Loading on an engine that fails, or that records what it was asked for.

#include <array>
#include <filesystem>

#include "faulty_model_test.h"
#include "quavin/client.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FaultyLoading : public FaultyModelTest {
protected:
    // Expects an engine failure that leaves load() unconverted.
    void expectEngineText(const std::string& text) {
        try {
            load();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const Exception& exception) {
            ADD_FAILURE() << "converted: " << exception.what();
        } catch (const std::exception& exception) {
            EXPECT_EQ(exception.what(), text);
        }
        EXPECT_THAT(predict(), IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    }
};

TEST_F(FaultyLoading, ModelsHaveTheEnginesTypeWhateverTheDeviceSays) {
    Device device;
    device.name = "GPU";
    device.engineType = QuavinModelType::CoreML;
    const OpenModel model("a name", device);
    EXPECT_EQ(model.getModelType(), QuavinModelType::Openvino);
    EXPECT_EQ(model.getName(), "a name");
    EXPECT_EQ(model.getMetadata(), nullptr);
}

TEST_F(FaultyLoading, TheCoreIsCreatedWithAnEmptyConfigurationFile) {
    EXPECT_THAT(engine_.configFiles, ElementsAre(""));
}

TEST_F(FaultyLoading, PreparingDoesNothing) {
    EXPECT_THAT(model_->prepareImpl(), IsOk());
    EXPECT_EQ(engine_.readersMade, 0);
}

TEST_F(FaultyLoading, TheDeviceIsAlwaysCpuAndTheConfigurationEmpty) {
    Device device;
    device.name = "GPU";
    device.description = "GPU.1";
    model_ = std::make_shared<OpenModel>("m", device);
    ASSERT_THAT(load(), IsOk());
    ASSERT_EQ(engine_.loadings.size(), 1U);
    EXPECT_EQ(engine_.loadings[0].device, "CPU");
    EXPECT_THAT(engine_.loadings[0].config, IsEmpty());
}

TEST_F(FaultyLoading, LoadingTwiceReadsOnceAndLoadsTheNetworkAgain) {
    const auto read = metadata();
    ASSERT_THAT(model_->load(read), IsOk());
    std::filesystem::remove(directory_.path() / "net.xml");
    std::filesystem::remove(directory_.path() / "net.bin");
    ASSERT_THAT(model_->load(read), IsOk());
    EXPECT_EQ(engine_.readTexts.size(), 1U);
    EXPECT_EQ(engine_.readersMade, 1);
    EXPECT_EQ(engine_.loadings.size(), 2U);
    EXPECT_EQ(engine_.requestsAlive, 1);  // the second replaced the first
}

TEST_F(FaultyLoading, LoadingAfterUnloadingReadsAgainWithANewReader) {
    const auto read = metadata();
    ASSERT_THAT(model_->load(read), IsOk());
    ASSERT_THAT(model_->unloadImpl(), IsOk());
    ASSERT_THAT(model_->load(read), IsOk());
    EXPECT_EQ(engine_.readTexts.size(), 2U);
    EXPECT_EQ(engine_.readersMade, 2);
    EXPECT_EQ(engine_.requestsAlive, 1);
}

TEST_F(FaultyLoading, UnloadingReleasesReaderAndMetadataAndKeepsRequestAndCore) {
    ASSERT_THAT(load(), IsOk());
    EXPECT_EQ(engine_.readersAlive, 1);
    EXPECT_THAT(model_->unloadImpl(), IsOk());
    EXPECT_EQ(engine_.readersAlive, 0);
    EXPECT_EQ(model_->getMetadata(), nullptr);
    EXPECT_EQ(engine_.requestsAlive, 1);
    EXPECT_EQ(engine_.coresAlive, 1);
}

TEST_F(FaultyLoading, UnloadingANeverLoadedModelAnswersSuccess) {
    EXPECT_THAT(model_->unloadImpl(), IsOk());
}

TEST_F(FaultyLoading, DestructionReleasesEverything) {
    ASSERT_THAT(load(), IsOk());
    model_.reset();
    EXPECT_EQ(engine_.readersAlive, 0);
    EXPECT_EQ(engine_.requestsAlive, 0);
    EXPECT_EQ(engine_.coresAlive, 0);
}

TEST_F(FaultyLoading, AStandardExceptionWhileReadingBecomesAFileExceptionWithItsText) {
    engine_.reading = {InferenceEngine::GENERAL_ERROR, "line 1: no such layer"};
    expectThrows<FileException>([&] { load(); }, FILE_ERROR, "line 1: no such layer");
    engine_.reading = {};
    engine_.settingWeights = {InferenceEngine::GENERAL_ERROR, "too few weights"};
    expectThrows<FileException>([&] { load(); }, FILE_ERROR, "too few weights");
}

TEST_F(FaultyLoading, AnyOtherExceptionWhileReadingBecomesAnExceptionWithTheGeneralText) {
    engine_.throwsNumbers = true;
    engine_.reading.status = InferenceEngine::GENERAL_ERROR;
    expectThrows<Exception>([&] { load(); }, FAILURE, "Unknown/internal exception happened.");
}

TEST_F(FaultyLoading, AnEngineWithoutAReaderThrowsAFileException) {
    engine_.hasReader = false;
    EXPECT_THROW(load(), FileException);
    engine_.hasReader = true;
    EXPECT_THAT(load(), IsOk());
}

TEST_F(FaultyLoading, AfterAFailureTheNextLoadReadsAgainWithTheSameReader) {
    engine_.reading = {InferenceEngine::GENERAL_ERROR, "not now"};
    EXPECT_THROW(load(), FileException);
    engine_.reading = {};
    engine_.settingWeights = {InferenceEngine::GENERAL_ERROR, "not now either"};
    EXPECT_THROW(load(), FileException);
    engine_.settingWeights = {};
    EXPECT_THAT(load(), IsOk());
    EXPECT_EQ(engine_.readTexts.size(), 3U);
    EXPECT_EQ(engine_.readersMade, 1);
}

TEST_F(FaultyLoading, ANullNetworkThrowsTheEnginesException) {
    engine_.hasNetwork = false;
    expectEngineText("CNNNetwork was not initialized.");
    EXPECT_TRUE(engine_.loadings.empty());
}

TEST_F(FaultyLoading, AFailureToLoadTheNetworkThrowsTheEnginesException) {
    engine_.loading = {InferenceEngine::GENERAL_ERROR, "no such device"};
    expectEngineText("no such device");
}

TEST_F(FaultyLoading, AFailureToCreateARequestThrowsTheEnginesException) {
    engine_.makingRequest = {InferenceEngine::GENERAL_ERROR, "no more requests"};
    expectEngineText("no more requests");
}

TEST_F(FaultyLoading, ANullRequestThrowsTheEnginesException) {
    engine_.hasRequest = false;
    expectEngineText("Internal error: pointer to infer request is null");
}

TEST_F(FaultyLoading, AFailureAfterReadingDoesNotReadAgain) {
    engine_.loading = {InferenceEngine::GENERAL_ERROR, "not now"};
    expectEngineText("not now");
    engine_.loading = {};
    ASSERT_THAT(load(), IsOk());
    EXPECT_EQ(engine_.readTexts.size(), 1U);
}

TEST_F(FaultyLoading, AFailedSecondLoadLeavesTheModelNotLoaded) {
    ASSERT_THAT(load(), IsOk());
    engine_.loading = {InferenceEngine::GENERAL_ERROR, "not now"};
    expectEngineText("not now");
}

TEST_F(FaultyLoading, AFailureAfterReadingLetsGoOfHandedOverWeights) {
    const QuavinClientInitTerm switchedOn{QuavinConfig()};
    writeManifest(directory_, text_);
    const std::string manifest = directory_.read("manifest.json");
    const auto owner = std::make_shared<std::array<std::int64_t, 2>>();
    const std::vector<PackageBuffer> buffers = {
        {"manifest.json", manifest.data(), manifest.size(), nullptr},
        {"net.xml", "topology", 8, nullptr},
        {"net.bin", owner->data(), sizeof *owner, owner}};
    engine_.readersKeepWeights = true;
    engine_.loading = {InferenceEngine::GENERAL_ERROR, "not now"};
    std::shared_ptr<QuavinModel> model;
    QuavinClient& client = QuavinClient::instance();
    EXPECT_THAT(
        client.getModelFromBuffers(buffers, PackageKeys(), model, Device(), EngineOptions()),
        IsStatus(FAILURE, "not now"));
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(client.queryRuntimeStatus().getLoadedModels().size(), 1U);
    EXPECT_EQ(engine_.readTexts.size(), 1U);
    engine_.weights.reset();
    EXPECT_EQ(owner.use_count(), 2);  // here, and in `buffers`
    EXPECT_THAT(client.getModelManager().unloadModel(model), IsOk());
}

TEST_F(FaultyLoading, FewerThanTwoFilesAnswerIncompleteModelWithoutReadingThem) {
    text_.components = {{"file", "net.xml"}, {"secured_tar", "net.bin"}};
    EXPECT_THAT(load(), IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
    EXPECT_EQ(engine_.readersMade, 0);
}

TEST_F(FaultyLoading, TheClientConvertsTheModelsExceptions) {
    const QuavinClientInitTerm switchedOn{QuavinConfig()};
    QuavinClient& client = QuavinClient::instance();
    const auto read = metadata();
    std::shared_ptr<QuavinModel> model;
    const auto status = [&] { return client.getModel(read, model, QuavinModelType::Openvino); };

    engine_.loading = {InferenceEngine::GENERAL_ERROR, "no such device"};
    EXPECT_THAT(status(), IsStatus(FAILURE, "no such device"));
    engine_.throwsNumbers = true;
    EXPECT_THAT(status(), IsStatus(FAILURE, "unknown error occured"));
    engine_.reading.status = InferenceEngine::GENERAL_ERROR;
    EXPECT_THAT(status(), IsStatus(FAILURE, "Unknown/internal exception happened."));
    engine_.throwsNumbers = false;
    engine_.reading.text = "line 1: no such layer";
    EXPECT_THAT(status(), IsStatus(FILE_ERROR, "line 1: no such layer"));
    engine_.reading = {};
    engine_.loading = {};
    engine_.hasNetwork = false;
    EXPECT_THAT(status(), IsStatus(FAILURE, "CNNNetwork was not initialized."));
    engine_.hasNetwork = true;
    engine_.hasRequest = false;
    EXPECT_THAT(status(), IsStatus(FAILURE, "Internal error: pointer to infer request is null"));
    engine_.hasRequest = true;
    EXPECT_THAT(status(), IsOk());
}

}  // namespace
}  // namespace VelmoraQuavin::testing
