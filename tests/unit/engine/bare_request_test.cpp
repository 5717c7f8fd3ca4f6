// Loading on an engine that returns empty request wrappers, or no wrapper at all.

#include <gmock/gmock.h>

#include "core/diagnostics.h"
#include "core/logging_hub.h"
#include "faulty_model_test.h"
#include "support/recording_log_processor.h"

namespace VelmoraQuavin::testing {
namespace {

class BareRequest : public FaultyModelTest {
protected:
    void expectNotLoaded() {
        EXPECT_THAT(load(), IsStatus(ML_FRAMEWORK_ERROR, "OpenVino unable to load model : "));
        EXPECT_THAT(predict(), IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    }
};

TEST_F(BareRequest, AWrapperWithoutARequestAnswers13) {
    engine_.hasRequest = true;
    expectNotLoaded();
}

TEST_F(BareRequest, NoWrapperAnswers13) {
    engine_.hasRequest = false;
    expectNotLoaded();
}

TEST_F(BareRequest, TheNextLoadDoesNotReadTheNetworkAgain) {
    expectNotLoaded();
    expectNotLoaded();
    EXPECT_EQ(engine_.readTexts.size(), 1U);
    EXPECT_EQ(engine_.loadings.size(), 2U);
}

TEST_F(BareRequest, DiagnosticsNameThePackage) {
    const auto recorder = std::make_shared<RecordingLogProcessor>();
    internal::LoggingHub::find()->setProcessor(recorder);
    internal::setDiagnostics(true);
    expectNotLoaded();
    internal::setDiagnostics(false);
    internal::LoggingHub::find()->setProcessor(nullptr);
    EXPECT_THAT(
        recorder->messages(),
        ::testing::ElementsAre("loading the package \"" + directory_.text() +
                               "\": the engine compiled the network and made no request for it"));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
