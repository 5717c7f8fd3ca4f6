// Who keeps the weights, and for how long.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "network_texts.hpp"
#include "network_under_test.hpp"
#include "recording_allocator.hpp"

namespace InferenceEngine {
namespace {

using testing::ElementsAre;

class WeightsTest : public testing::Test {
protected:
    /** Returns a reader of the adding network that alone holds the weights, which are poisoned
     * when freed. */
    std::shared_ptr<ICNNNetReader> readAddingNetwork() {
        const std::vector<float> elements{10, 20, 30, 40};
        const auto weights = make_shared_blob<std::uint8_t>(
            TensorDesc(Precision::U8, {16}, ANY), std::make_shared<RecordingAllocator>(record_));
        weights->allocate();
        std::memcpy(weights->buffer().as<void*>(), elements.data(), 16);
        return readNetwork(addingNetwork(), weights);
    }

    static void expectSums(InferRequest& request) {
        const Blob::Ptr output = floats({1, 4});
        request.SetBlob("x", floats({1, 4}, {1, 2, 3, 4}));
        request.SetBlob("y", output);
        request.Infer();
        EXPECT_THAT(elementsOf<float>(output), ElementsAre(11, 22, 33, 44));
    }

    bool freed() const { return record_->frees != 0; }

    std::shared_ptr<RecordingAllocator::Record> record_ =
        std::make_shared<RecordingAllocator::Record>();
};

TEST_F(WeightsTest, WeightsAreSharedAndNotCopied) {
    const auto reader = readAddingNetwork();
    EXPECT_EQ(record_->allocations, 1);
    EXPECT_FALSE(freed());
}

TEST_F(WeightsTest, WeightsAreFreedWithTheReaderIfNothingWasLoaded) {
    auto reader = readAddingNetwork();
    reader.reset();
    EXPECT_TRUE(freed());
}

TEST_F(WeightsTest, WeightsLiveAsLongAsTheLoadedNetwork) {
    {
        ExecutableNetwork loaded = Core().LoadNetwork(CNNNetwork(readAddingNetwork()), "CPU");
        EXPECT_FALSE(freed());
        expectSums(*loaded.CreateInferRequestPtr());
        EXPECT_FALSE(freed());
    }
    EXPECT_TRUE(freed());
}

TEST_F(WeightsTest, WeightsLiveAsLongAsARequest) {
    auto reader = readAddingNetwork();
    InferRequest::Ptr request = load(CNNNetwork(reader));
    reader.reset();
    EXPECT_FALSE(freed());
    expectSums(*request);
    expectSums(*request);
    request.reset();
    EXPECT_TRUE(freed());
}

TEST_F(WeightsTest, WeightsLiveAsLongAsTheLastOfSeveralRequests) {
    InferRequest::Ptr first;
    InferRequest::Ptr second;
    {
        ExecutableNetwork loaded = Core().LoadNetwork(CNNNetwork(readAddingNetwork()), "CPU");
        first = loaded.CreateInferRequestPtr();
        second = loaded.CreateInferRequestPtr();
    }
    first.reset();
    EXPECT_FALSE(freed());
    expectSums(*second);
    second.reset();
    EXPECT_TRUE(freed());
}

TEST_F(WeightsTest, WeightsAreReleasedImmediatelyIfReadingFails) {
    const auto weights = make_shared_blob<std::uint8_t>(
        TensorDesc(Precision::U8, {8}, ANY), std::make_shared<RecordingAllocator>(record_));
    weights->allocate();
    const auto reader = makeReader();
    EXPECT_NE(tryReading(*reader, addingNetwork(), weights).status, OK);
    EXPECT_EQ(weights.use_count(), 1);
}

}  // namespace
}  // namespace InferenceEngine
