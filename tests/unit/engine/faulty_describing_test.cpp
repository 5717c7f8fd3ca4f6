// Describing a network on an engine that fails, or that records what it was asked for.

#include "faulty_model_test.h"
#include "quavin/network.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FaultyDescribing : public FaultyModelTest {
protected:
    QuavinStatus describeFiles() {
        return describeNetwork(Filepath(directory_.entry("net.xml")),
                               Filepath(directory_.entry("net.bin")), declaredInputs_,
                               declaredOutputs_);
    }

    std::vector<ModelFeatureDescriptor> declaredInputs_;
    std::vector<ModelFeatureDescriptor> declaredOutputs_;
};

TEST_F(FaultyDescribing, ReleasesItsReaderAndLoadsNothing) {
    EXPECT_THAT(describeFiles(), IsOk());
    EXPECT_THAT(engine_.readTexts, ElementsAre("topology"));
    EXPECT_EQ(engine_.readersMade, 1);
    EXPECT_EQ(engine_.readersAlive, 0);
    EXPECT_THAT(engine_.loadings, IsEmpty());
}

TEST_F(FaultyDescribing, AMissingReaderAnswersFileErrorAndChangesNothing) {
    engine_.hasReader = false;
    declaredInputs_.emplace_back();
    EXPECT_THAT(describeFiles(), IsStatus(FILE_ERROR, "The engine provides no network reader"));
    EXPECT_EQ(declaredInputs_.size(), 1U);
}

TEST_F(FaultyDescribing, AnswersWithTheTextOfAFailedRead) {
    engine_.settingWeights = {InferenceEngine::GENERAL_ERROR, "too few weights"};
    EXPECT_THAT(describeFiles(), IsStatus(FILE_ERROR, "too few weights"));
    EXPECT_EQ(engine_.readersAlive, 0);
}

TEST_F(FaultyDescribing, ANullNetworkAnswersWithTheEnginesText) {
    engine_.hasNetwork = false;
    EXPECT_THAT(describeFiles(), IsStatus(FAILURE, "CNNNetwork was not initialized."));
}

TEST_F(FaultyDescribing, ANonStandardExceptionAnswersTheGeneralText) {
    engine_.throwsNumbers = true;
    engine_.reading.status = InferenceEngine::GENERAL_ERROR;
    EXPECT_THAT(describeFiles(), IsStatus(FAILURE, "Unknown/internal exception happened."));
}

TEST_F(FaultyDescribing, ReportsPrecisionsWithoutATensorTypeAsUndefined) {
    engine_.addInput("wide", {InferenceEngine::Precision::I64, {1, 4}, InferenceEngine::NC});
    ASSERT_THAT(describeFiles(), IsOk());
    ASSERT_EQ(declaredInputs_.size(), 2U);
    EXPECT_EQ(declaredInputs_[0].name(), "wide");
    EXPECT_EQ(declaredInputs_[0].tensorDescriptor().tensorType(), DataType::UNDEFINED);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
