// When a blob is bound in the runtime, and when it is bound already.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "loaded_request.hpp"
#include "network_texts.hpp"
#include "network_under_test.hpp"
#include "runtime_core.hpp"
#include "runtime_network.hpp"

namespace InferenceEngine::runtime {
namespace {

using testing::ElementsAre;

class RebindingTest : public testing::Test {
protected:
    RebindingTest() {
        const auto reader = readNetwork(doublingNetwork());
        auto& network = dynamic_cast<RuntimeNetwork&>(*reader->getNetwork(nullptr));
        const auto loaded = network.load(*sharedCore(), "CPU");
        EXPECT_EQ(loaded->CreateInferRequest(owner_, nullptr), StatusCode::OK);
        request_ = dynamic_cast<LoadedRequest*>(owner_.get());
    }

    void set(const char* name, const Blob::Ptr& blob) {
        ResponseDesc response;
        ASSERT_EQ(request_->SetBlob(name, blob, &response), StatusCode::OK) << response.msg;
    }

    void infer() {
        ResponseDesc response;
        ASSERT_EQ(request_->Infer(&response), StatusCode::OK) << response.msg;
    }

    static Blob::Ptr over(std::array<float, 4>& memory) {
        return make_shared_blob<float>(TensorDesc(Precision::FP32, {1, 4}, NC), memory.data());
    }

    IInferRequest::Ptr owner_;
    LoadedRequest* request_ = nullptr;
    std::array<float, 4> input_{1, 2, 3, 4};
    std::array<float, 4> output_{};
};

TEST_F(RebindingTest, IsSkippedIfNothingChanged) {
    for (int round = 0; round < 3; ++round) {
        // New blobs over the same memory, as a prediction creates them.
        set("x", over(input_));
        set("y", over(output_));
        input_[0] = static_cast<float>(round);
        infer();
        EXPECT_THAT(output_, ElementsAre(2.0F * static_cast<float>(round), 4, 6, 8));
    }
    EXPECT_EQ(request_->bindings(), 2U);
}

TEST_F(RebindingTest, IsNeverSkippedIfTheMemoryChanged) {
    std::array<float, 4> otherInput{10, 20, 30, 40};
    std::array<float, 4> otherOutput{};
    set("x", over(input_));
    set("y", over(output_));
    infer();
    set("x", over(otherInput));
    set("y", over(output_));
    infer();
    EXPECT_THAT(output_, ElementsAre(20, 40, 60, 80));
    EXPECT_EQ(request_->bindings(), 3U);
    output_ = {};
    set("x", over(otherInput));
    set("y", over(otherOutput));
    infer();
    EXPECT_THAT(otherOutput, ElementsAre(20, 40, 60, 80));
    EXPECT_THAT(output_, ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(request_->bindings(), 4U);
}

TEST_F(RebindingTest, ABlobOverOtherMemoryIsBoundAgain) {
    std::array<float, 4> otherInput{10, 20, 30, 40};
    set("x", over(input_));
    set("x", over(otherInput));
    set("x", over(input_));
    EXPECT_EQ(request_->bindings(), 3U);
    set("y", over(output_));
    infer();
    EXPECT_THAT(output_, ElementsAre(2, 4, 6, 8));
}

TEST_F(RebindingTest, TheLastBlobSetIsUsed) {
    std::array<float, 4> otherOutput{};
    set("x", over(input_));
    set("y", over(otherOutput));
    set("y", over(output_));
    infer();
    EXPECT_THAT(otherOutput, ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(output_, ElementsAre(2, 4, 6, 8));
}

TEST_F(RebindingTest, ARefusedBlobDoesNotCount) {
    set("x", over(input_));
    EXPECT_NE(request_->SetBlob("x", nullptr, nullptr), StatusCode::OK);
    EXPECT_NE(request_->SetBlob(nullptr, over(input_), nullptr), StatusCode::OK);
    set("x", over(input_));
    EXPECT_EQ(request_->bindings(), 1U);
}

}  // namespace
}  // namespace InferenceEngine::runtime
