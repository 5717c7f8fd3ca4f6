// Diagnostics about failures that a real engine does not produce on demand.

#include <gmock/gmock.h>

#include <vector>

#include "core/diagnostics.h"
#include "core/logging_hub.h"
#include "faulty_model_test.h"
#include "quavin/network.h"
#include "support/recording_log_processor.h"

namespace VelmoraQuavin::testing {
namespace {

using InferenceEngine::Precision;
using InferenceEngine::TensorDesc;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using Components = std::vector<std::pair<std::string, std::string>>;

constexpr const char* kWithheld =
    "predict: the engine failed; its message is withheld because a component is secured and the "
    "message may quote it";

class FaultyDiagnostics : public FaultyModelTest {
protected:
    FaultyDiagnostics() {
        internal::setDiagnostics(true);
        internal::LoggingHub::find()->setProcessor(recorder_);
    }
    ~FaultyDiagnostics() override {
        internal::LoggingHub::find()->setProcessor(nullptr);
        internal::setDiagnostics(false);
    }

    std::vector<std::string> records() const { return recorder_->messages(); }
    void failToPredict() { EXPECT_THROW(predict(), MLFrameworkException); }
    // Loads files secured with an all-zero key.
    void loadSecured(const Components& components) {
        text_.components = components;
        for (const auto& [kind, path] : components) {
            if (kind == "secured_file") {
                directory_.write(path, secured("content", CryptoKey{}, BlockFilling::kPkcs7));
            }
        }
        loadWithInput();
    }

    const std::shared_ptr<RecordingLogProcessor> recorder_ =
        std::make_shared<RecordingLogProcessor>();
};

TEST_F(FaultyDiagnostics, TheEnginesTextIsReportedIfPredictHidesIt) {
    loadWithInput();
    engine_.inferring = {InferenceEngine::GENERAL_ERROR, "layer 3:\nno memory"};
    failToPredict();
    engine_.inferring = {};
    engine_.binding["x"] = {InferenceEngine::PARAMETER_MISMATCH,
                            "a text that is longer than the one before"};
    failToPredict();
    EXPECT_THAT(
        records(),
        ElementsAre("predict: the engine failed: layer 3: no memory",
                    "predict: the engine failed: a text that is longer than the one before"));
}

TEST_F(FaultyDiagnostics, AnEngineFailureWithoutATextIsReportedAsSuch) {
    loadWithInput();
    engine_.throwsNumbers = true;
    engine_.inferring.status = InferenceEngine::GENERAL_ERROR;
    failToPredict();
    EXPECT_THAT(records(),
                ElementsAre("predict: the engine failed: an exception without a message"));
}

TEST_F(FaultyDiagnostics, TheEnginesTextIsWithheldIfAComponentIsSecured) {
    for (const Components& components :
         {Components{{"secured_file", "net.xml"}, {"file", "net.bin"}},
          Components{{"file", "net.xml"}, {"secured_file", "net.bin"}}}) {
        recorder_->clear();
        model_ = std::make_shared<OpenModel>("m", Device());
        loadSecured(components);
        engine_.inferring = {InferenceEngine::GENERAL_ERROR, "layer secret"};
        failToPredict();
        EXPECT_THAT(records(), ElementsAre(kWithheld));
    }
}

TEST_F(FaultyDiagnostics, AnUnreadSecuredFileDoesNotWithholdTheEnginesText) {
    loadSecured({{"file", "net.xml"}, {"file", "net.bin"}, {"secured_file", "more"}});
    engine_.inferring = {InferenceEngine::GENERAL_ERROR, "its words"};
    failToPredict();
    EXPECT_THAT(records(), ElementsAre("predict: the engine failed: its words"));
}

TEST_F(FaultyDiagnostics, WithholdingDependsOnTheFilesActuallyRead) {
    loadSecured({{"secured_file", "net.xml"}, {"file", "net.bin"}});
    // Reloaded without unloading: nothing is read again, whatever the manifest now says.
    text_.components[0].first = "file";
    ASSERT_THAT(load(), IsOk());
    engine_.inferring = {InferenceEngine::GENERAL_ERROR, "layer secret"};
    failToPredict();
    EXPECT_THAT(records(), ElementsAre(kWithheld));
}

TEST_F(FaultyDiagnostics, AnOutputOfUnsupportedTypeIsNamed) {
    engine_.addOutput("y", TensorDesc(Precision::FP16, {1, 4}, InferenceEngine::NC));
    loadWithInput();
    EXPECT_THROW(predict(), InvalidTypeException);
    EXPECT_THAT(records(),
                ElementsAre("predict: the network's output \"y\" has the precision FP16"));
}

TEST_F(FaultyDiagnostics, TheNetworkIsNamedIfReadingFailsWithoutAText) {
    engine_.throwsNumbers = true;
    engine_.reading.status = InferenceEngine::GENERAL_ERROR;
    const std::string record = "reading the network \"" + directory_.entry("net.xml") +
                               "\": the engine threw an exception without a message";
    EXPECT_THROW(load(), Exception);
    EXPECT_THAT(records(), ElementsAre(record));
    std::vector<ModelFeatureDescriptor> ports;
    EXPECT_FALSE(describeNetwork(Filepath(directory_.entry("net.xml")),
                                 Filepath(directory_.entry("net.bin")), ports, ports)
                     .ok());
    EXPECT_THAT(records(), ElementsAre(record, record));
}

TEST_F(FaultyDiagnostics, NothingIsReportedIfTheStatusHasTheEnginesText) {
    engine_.reading = {InferenceEngine::GENERAL_ERROR, "line 1: no such layer"};
    expectThrows<FileException>([&] { load(); }, FILE_ERROR, "line 1: no such layer");
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(FaultyDiagnostics, NothingIsReportedUnlessEnabled) {
    internal::setDiagnostics(false);
    loadWithInput();
    engine_.inferring.status = InferenceEngine::GENERAL_ERROR;
    failToPredict();
    inputs_.clear();
    EXPECT_THAT(predict(), Not(IsOk()));
    EXPECT_THAT(records(), IsEmpty());
}

}  // namespace
}  // namespace VelmoraQuavin::testing
