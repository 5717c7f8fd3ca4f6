#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <inference_engine.hpp>
#include <limits>

#include "recording_allocator.hpp"

namespace InferenceEngine {
namespace {

using testing::StartsWith;
using testing::ThrowsMessage;
using General = details::InferenceEngineException;

TensorDesc sixFloats() {
    return TensorDesc(Precision::FP32, {2, 3}, NC);
}

TEST(BlobTest, CountsElementsAndBytes) {
    const auto blob = make_shared_blob<std::int16_t>(TensorDesc(Precision::I16, {2, 3, 4}, CHW));
    EXPECT_EQ(blob->size(), 24U);
    EXPECT_EQ(blob->element_size(), 2U);
    EXPECT_EQ(blob->byteSize(), 48U);
    EXPECT_EQ(blob->getTensorDesc().getDims(), (SizeVector{2, 3, 4}));
}

TEST(BlobTest, HasOneElementWithoutDimensions) {
    EXPECT_EQ(make_shared_blob<float>(TensorDesc(Precision::FP32, {}, SCALAR))->size(), 1U);
    EXPECT_EQ(make_shared_blob<float>(TensorDesc(Precision::FP32, {}, ANY))->size(), 1U);
}

TEST(BlobTest, HasNoMemoryUntilAllocated) {
    const auto blob = make_shared_blob<float>(sixFloats());
    EXPECT_TRUE(blob->buffer() == nullptr);
    EXPECT_FALSE(blob->deallocate());
    blob->allocate();
    EXPECT_TRUE(blob->buffer() != nullptr);
    EXPECT_TRUE(blob->deallocate());
    EXPECT_TRUE(blob->buffer() == nullptr);
}

TEST(BlobTest, AllAccessorsReturnTheSameMemory) {
    const auto blob = make_shared_blob<float>(sixFloats());
    blob->allocate();
    float* const data = blob->data();
    data[5] = 4.25F;
    EXPECT_EQ(blob->readOnly()[5], 4.25F);
    EXPECT_EQ(blob->buffer().as<float*>(), data);
    EXPECT_EQ(blob->cbuffer().as<const float*>(), data);
}

TEST(BlobTest, ABlobOverGivenMemoryReturnsThatMemory) {
    std::array<float, 6> memory{};
    const auto blob = make_shared_blob<float>(sixFloats(), memory.data());
    EXPECT_EQ(blob->buffer().as<float*>(), memory.data());
    EXPECT_EQ(make_shared_blob<float>(sixFloats(), memory.data(), memory.size())->data(),
              memory.data());
}

TEST(BlobTest, ABlobOverGivenMemoryNeitherAllocatesNorFrees) {
    std::array<float, 6> memory{1.0F};
    const auto blob = make_shared_blob<float>(sixFloats(), memory.data());
    blob->allocate();
    EXPECT_FALSE(blob->deallocate());
    EXPECT_EQ(blob->buffer().as<float*>(), memory.data());
}

TEST(BlobTest, ABlobOverTooFewElementsHasNoMemory) {
    std::array<float, 5> memory{};
    const auto blob = make_shared_blob<float>(sixFloats(), memory.data(), memory.size());
    EXPECT_TRUE(blob->buffer() == nullptr);
}

TEST(BlobTest, ANullPointerThrows) {
    EXPECT_THROW(make_shared_blob<float>(sixFloats(), static_cast<float*>(nullptr)), General);
}

TEST(BlobTest, ANullAllocatorThrows) {
    EXPECT_THROW(make_shared_blob<float>(sixFloats(), std::shared_ptr<IAllocator>()), General);
}

TEST(BlobTest, AllocatesThroughTheGivenAllocator) {
    const auto record = std::make_shared<RecordingAllocator::Record>();
    {
        const auto blob =
            make_shared_blob<float>(sixFloats(), std::make_shared<RecordingAllocator>(record));
        EXPECT_EQ(record->allocations, 0);
        blob->allocate();
        EXPECT_EQ(record->allocations, 1);
        EXPECT_EQ(record->lastSize, 24U);
        { EXPECT_TRUE(blob->buffer() != nullptr); }
        EXPECT_EQ(record->locks, 1);
        EXPECT_EQ(record->unlocks, 1);
        EXPECT_EQ(record->frees, 0);
    }
    EXPECT_EQ(record->frees, 1);
}

TEST(BlobTest, AllocatingAgainFreesTheEarlierMemory) {
    const auto record = std::make_shared<RecordingAllocator::Record>();
    const auto blob =
        make_shared_blob<float>(sixFloats(), std::make_shared<RecordingAllocator>(record));
    blob->allocate();
    blob->allocate();
    EXPECT_EQ(record->allocations, 2);
    EXPECT_EQ(record->frees, 1);
}

TEST(BlobTest, HasNoMemoryWhenTheAllocatorHasNone) {
    const auto record = std::make_shared<RecordingAllocator::Record>();
    record->refuse = true;
    const auto blob =
        make_shared_blob<float>(sixFloats(), std::make_shared<RecordingAllocator>(record));
    blob->allocate();
    EXPECT_TRUE(blob->buffer() == nullptr);
}

TEST(BlobTest, PassesNullBackToAnAllocatorThatHadNoMemory) {
    const auto record = std::make_shared<RecordingAllocator::Record>();
    record->refuse = true;
    {
        const auto blob =
            make_shared_blob<float>(sixFloats(), std::make_shared<RecordingAllocator>(record));
        blob->allocate();
        EXPECT_EQ(record->freesOfNull, 0);
        EXPECT_FALSE(blob->deallocate());
        EXPECT_EQ(record->freesOfNull, 1);
    }
    EXPECT_EQ(record->freesOfNull, 2);
}

TEST(BlobTest, ABlobOfZeroBytesIsAllocatedLikeAnyOther) {
    const auto blob = make_shared_blob<std::uint8_t>(TensorDesc(Precision::U8, {0}, ANY));
    blob->allocate();
    EXPECT_EQ(blob->byteSize(), 0U);
    EXPECT_TRUE(blob->buffer() != nullptr);
    EXPECT_TRUE(blob->deallocate());
}

TEST(BlobTest, HeapMemoryIsAlignedToACacheLine) {
    const auto blob = make_shared_blob<float>(sixFloats());
    blob->allocate();
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blob->buffer().as<void*>()) % 64, 0U);
}

TEST(BlobTest, MoreElementsThanMemoryCanHoldThrow) {
    const std::size_t many = std::numeric_limits<std::size_t>::max() / 2;
    EXPECT_THROW(make_shared_blob<std::uint8_t>(TensorDesc(Precision::U8, {many, 4}, NC)), General);
    EXPECT_NO_THROW(make_shared_blob<std::uint8_t>(TensorDesc(Precision::U8, {0, many}, NC)));
}

TEST(BlobTest, SharedBlobOfTheWrongElementTypeThrows) {
    EXPECT_THAT([] { make_shared_blob<std::int32_t>(sixFloats()); },
                ThrowsMessage<General>(StartsWith("Cannot make shared blob! ")));
    EXPECT_THAT([] { make_shared_blob<float>(TensorDesc(Precision::UNSPECIFIED, {1}, C)); },
                ThrowsMessage<General>(StartsWith("Cannot make shared blob! ")));
}

TEST(AllocatorTest, DefaultAllocatorAllocatesAndFrees) {
    const auto allocator = details::shared_from_irelease(CreateDefaultAllocator());
    void* const handle = allocator->alloc(3);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(allocator->lock(handle), handle);
    allocator->unlock(handle);
    EXPECT_TRUE(allocator->free(handle));
    EXPECT_FALSE(allocator->free(nullptr));
}

}  // namespace
}  // namespace InferenceEngine
