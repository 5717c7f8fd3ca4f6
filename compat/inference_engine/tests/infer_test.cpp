// Rounds of SetBlob and Infer, and how long a request holds its blobs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "network_texts.hpp"
#include "network_under_test.hpp"
#include "recording_allocator.hpp"

namespace InferenceEngine {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

class InferTest : public testing::Test {
protected:
    InferRequest::Ptr request_ = load(CNNNetwork(readNetwork(doublingNetwork())));
};

TEST_F(InferTest, EveryRoundYieldsItsOwnNumbers) {
    const Blob::Ptr first = floats({1, 4});
    const Blob::Ptr second = floats({1, 4});
    request_->SetBlob("x", floats({1, 4}, {1, 2, 3, 4}));
    request_->SetBlob("y", first);
    request_->Infer();
    request_->SetBlob("x", floats({1, 4}, {-1, -2, -3, -4}));
    request_->SetBlob("y", second);
    request_->Infer();
    EXPECT_THAT(elementsOf<float>(first), ElementsAre(2, 4, 6, 8));
    EXPECT_THAT(elementsOf<float>(second), ElementsAre(-2, -4, -6, -8));
}

// Processors with instructions for half precision would produce infinity.
TEST_F(InferTest, KeepsNumbersBeyondHalfPrecisionFinite) {
    const Blob::Ptr output = floats({1, 4});
    request_->SetBlob("x", floats({1, 4}, {65536, -1048576, 0x1p100F, 0x1p-100F}));
    request_->SetBlob("y", output);
    request_->Infer();
    EXPECT_THAT(elementsOf<float>(output), ElementsAre(131072, -2097152, 0x1p101F, 0x1p-99F));
}

TEST_F(InferTest, HoldsTheBlobsUntilItReturns) {
    Blob::Ptr input = floats({1, 4}, {1, 2, 3, 4});
    Blob::Ptr output = floats({1, 4});
    const std::weak_ptr<Blob> watchedInput = input;
    const std::weak_ptr<Blob> watchedOutput = output;
    request_->SetBlob("x", input);
    request_->SetBlob("y", output);
    input.reset();
    output.reset();
    EXPECT_FALSE(watchedInput.expired());
    EXPECT_FALSE(watchedOutput.expired());
    request_->Infer();
    EXPECT_TRUE(watchedInput.expired());
    EXPECT_TRUE(watchedOutput.expired());
}

TEST_F(InferTest, ForgetsTheBlobsWhenItThrows) {
    Blob::Ptr input = floats({1, 4}, {1, 2, 3, 4});
    const std::weak_ptr<Blob> watched = input;
    request_->SetBlob("x", input);
    input.reset();
    EXPECT_THROW(request_->Infer(), NotAllocated);
    EXPECT_TRUE(watched.expired());
}

TEST_F(InferTest, ADroppedOutputReturnsToItsAllocatorImmediately) {
    const auto record = std::make_shared<RecordingAllocator::Record>();
    auto output = make_shared_blob<float>(TensorDesc(Precision::FP32, {1, 4}, NC),
                                          std::make_shared<RecordingAllocator>(record));
    output->allocate();
    request_->SetBlob("x", floats({1, 4}, {1, 2, 3, 4}));
    request_->SetBlob("y", output);
    request_->Infer();
    EXPECT_THAT(elementsOf<float>(output), ElementsAre(2, 4, 6, 8));
    EXPECT_EQ(record->frees, 0);
    output.reset();
    EXPECT_EQ(record->frees, 1);
}

TEST_F(InferTest, NeedsEveryBlobInEveryRound) {
    EXPECT_THAT([&] { request_->Infer(); },
                ThrowsMessage<NotAllocated>(HasSubstr("Input \"x\" has no blob")));
    request_->SetBlob("x", floats({1, 4}, {1, 2, 3, 4}));
    request_->SetBlob("y", floats({1, 4}));
    request_->Infer();

    request_->SetBlob("y", floats({1, 4}));
    EXPECT_THAT([&] { request_->Infer(); },
                ThrowsMessage<NotAllocated>(HasSubstr("Input \"x\" has no blob")));
    request_->SetBlob("x", floats({1, 4}, {1, 2, 3, 4}));
    EXPECT_THAT([&] { request_->Infer(); },
                ThrowsMessage<NotAllocated>(HasSubstr("Output \"y\" has no blob")));
}

TEST_F(InferTest, RunsAgainAfterARefusal) {
    EXPECT_THROW(request_->Infer(), NotAllocated);
    const Blob::Ptr output = floats({1, 4});
    request_->SetBlob("x", floats({1, 4}, {1, 2, 3, 4}));
    request_->SetBlob("y", output);
    request_->Infer();
    EXPECT_THAT(elementsOf<float>(output), ElementsAre(2, 4, 6, 8));
}

}  // namespace
}  // namespace InferenceEngine
