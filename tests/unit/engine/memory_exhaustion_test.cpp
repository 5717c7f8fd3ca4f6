// Memory runs out at each of the library's allocations in turn, while a plain package is loaded.
// What else it runs out in is in tests/faults.

#include <gmock/gmock.h>

#include <memory>

#include "allocation_watch.h"
#include "core/diagnostics.h"
#include "integration/model_test.h"
#include "package/signature/trusted_keys.h"
#include "support/recording_log_processor.h"
#include "support/signature_data.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr int kMostAllocations = 100'000;
constexpr int kAllocationsBetweenLoads = 8;

class MemoryExhaustion : public ModelTest {
protected:
    MemoryExhaustion() { writePackage(directory_, affineNetwork()); }

    // y = 2 x + (0.5, 1, 1.5, 2)
    void expectPrediction() {
        ASSERT_NE(model_, nullptr);
        ASSERT_THAT(allocateInputs(), IsOk());
        EXPECT_THAT(predictFloats({1, -2, 3, 100}), ElementsAre(2.5F, -3.F, 7.5F, 202.F));
    }

    void loadAndPredict() {
        ASSERT_THAT(load(), IsOk());
        expectPrediction();
    }
};

TEST_F(MemoryExhaustion, DuringLoadingReturnsAStatus) {
    loadAndPredict();
    const String path(directory_.text());
    const std::shared_ptr<QuavinModel> first = model_;  // keeps the engine's devices alive
    bool happened = true;
    int succeeded = 0;
    for (int which = 1; happened && which < kMostAllocations; ++which) {
        SCOPED_TRACE(which);
        QuavinStatus status;
        {
            const AllocationFailure failure(which);
            ASSERT_NO_THROW(status = client_.getModel(path, model_, 0, QuavinModelType::Openvino));
            happened = failure.happened();
        }
        ASSERT_TRUE(happened || status.ok()) << status.getDescription();
        if (status.ok()) {
            ++succeeded;  // without what the engine would have reported about itself
            expectPrediction();
        }
        if (which % kAllocationsBetweenLoads == 0) {
            loadAndPredict();
        }
    }
    EXPECT_FALSE(happened);
    // Besides the load that had enough memory, those that ran out only while asking for such
    // details.
    EXPECT_LT(succeeded, 20);
}

TEST_F(MemoryExhaustion, ASteadyPredictionAllocatesAtMostEightTimes) {
    constexpr int kMost = 8;
    loadAndPredict();
    int which = 1;
    for (bool happened = true; happened; ++which) {
        Features outputs;
        const AllocationFailure failure(which);
        try {
            static_cast<void>(model_->predict(inputs_, outputs));
        } catch (const std::bad_alloc&) {
        } catch (const Exception&) {
        }
        happened = failure.happened();
    }
    EXPECT_LE(which - 2, kMost);
}

TEST(SwitchingOnOutOfMemory, TakesTheWholeConfigurationOrNothing) {
    QuavinConfig config;
    config.SetLogger(std::make_shared<RecordingLogProcessor>());
    config.SetDiagnostics(true);
    config.SetTrustedKeys({readPem("p256"), readPem("rsa")});
    bool happened = true;
    int failures = 0;
    for (int which = 1; happened && which < kMostAllocations; ++which) {
        SCOPED_TRACE(which);
        bool isOn = false;
        {
            const AllocationFailure failure(which);
            try {
                isOn = QuavinClient::init(config).ok();
            } catch (const std::bad_alloc&) {
                ++failures;
            }
            happened = failure.happened();
        }
        EXPECT_TRUE(isOn || happened);
        EXPECT_EQ(QuavinClient::isInitialized(), isOn);
        EXPECT_EQ(internal::areDiagnosticsOn(), isOn);
        EXPECT_EQ(internal::areKeysTrusted(), isOn);
        if (isOn) {
            // A key whose hash lacked memory cannot be used either.
            EXPECT_THAT(internal::trustedKeys()->problem,
                        StartsWith(happened ? "Trusted key 1: " : "Trusted key 2: "));
        }
        QuavinClient::terminate();
        internal::setTrustedKeys(nullptr);
    }
    EXPECT_FALSE(happened);
    EXPECT_GT(failures, 2);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
