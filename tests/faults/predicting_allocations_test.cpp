// Memory runs out while inputs are made and a model predicts.

#include <new>

#include "faults/allocation_sweep.h"
#include "integration/model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;

class PredictingAllocations : public ModelTest {
protected:
    void SetUp() override {
        ASSERT_THAT(loadNetwork(affineNetwork()), IsOk());
        expectPrediction();
    }
    // y = 2 x + (0.5, 1, 1.5, 2)
    void expectPrediction() {
        ASSERT_THAT(allocateInputs(), IsOk());
        EXPECT_THAT(predictFloats({1, -2, 3, 100}), ElementsAre(2.5F, -3.F, 7.5F, 202.F));
    }
    // A failure is a status, or an exception of one of the documented kinds.
    template <typename Operation>
    void sweep(Operation operation) {
        bool failed = false;
        sweepAllocations(
            kAllAllocations,
            [&] {
                failed = true;
                try {
                    failed = !operation();
                } catch (const std::bad_alloc&) {
                } catch (const MLFrameworkException&) {
                }
            },
            [&](bool happened) {
                EXPECT_EQ(failed, happened);
                expectPrediction();
            });
    }
};

TEST_F(PredictingAllocations, OfInputs) {
    Features inputs;
    sweep([&] {
        inputs.clear();
        return model_->allocateInputs(inputs).ok();
    });
}

TEST_F(PredictingAllocations, OfATensorThatTheHostMakes) {
    const TensorShape shape({1, 4});
    sweep([&] {
        const Tensor tensor(DataType::FLOAT, shape);
        return tensor.bytes() == 16;
    });
}

TEST_F(PredictingAllocations, OfAPrediction) {
    Features outputs;
    sweep([&] {
        outputs.clear();
        return model_->predict(inputs_, outputs).ok();
    });
}

}  // namespace
}  // namespace VelmoraQuavin::testing
