// One thread loads, unloads and drops models while another predicts with its own model.

#include <atomic>
#include <future>

#include "integration/model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using LoadingBesidePredicting = ModelTest;

TEST_F(LoadingBesidePredicting, DoesNotDisturbPredictionsOfAnotherModel) {
    constexpr int kLoads = 10;
    ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    TempDirectory broken;
    writePackage(broken, affineNetwork());
    broken.write("net.xml", "no network");

    std::atomic<bool> loading{true};
    auto predictions = std::async(std::launch::async, [&] {
        int count = 0;
        while (loading || count == 0) {
            const auto value = static_cast<float>(count % 100);
            fill(inputs_.at(0), std::vector<float>{value, 0, 0, -value});
            Features outputs;
            if (!model_->predict(inputs_, outputs).ok() ||
                valuesOf<float>(outputs.at(0)) !=
                    std::vector<float>{2 * value + 0.5F, 1, 1.5F, 2 - 2 * value}) {
                return -1;
            }
            ++count;
        }
        return count;
    });
    for (int round = 0; round < kLoads; ++round) {
        std::shared_ptr<QuavinModel> other;
        EXPECT_THAT(client_.getModel(directory_.text(), other, 0, QuavinModelType::Openvino),
                    IsOk());
        EXPECT_THAT(client_.unloadModel(other), IsOk());
        other.reset();
        EXPECT_THAT(client_.getModel(directory_.text(), other, Device(), 0), IsOk());
        EXPECT_EQ(client_.queryRuntimeStatus().getLoadedModels().size(), 1u);
        EXPECT_THAT(client_.getModelManager().unloadModel(other), IsOk());
        other.reset();
        EXPECT_FALSE(client_.getModel(broken.text(), other, 0, QuavinModelType::Openvino).ok());
    }
    loading = false;
    EXPECT_GT(predictions.get(), 0);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
