#include <gtest/gtest.h>

#include <array>
#include <inference_engine.hpp>
#include <type_traits>
#include <utility>

#include "recording_allocator.hpp"

namespace InferenceEngine {
namespace {

class LockedMemoryTest : public testing::Test {
protected:
    std::shared_ptr<RecordingAllocator::Record> record_ =
        std::make_shared<RecordingAllocator::Record>();
    RecordingAllocator allocator_{record_};
    std::array<float, 2> memory_{1.5F, 2.5F};
};

TEST_F(LockedMemoryTest, LocksWhenFirstReadAndUnlocksWhenDestroyed) {
    {
        const LockedMemory<float> locked(&allocator_, memory_.data());
        EXPECT_EQ(record_->locks, 0);
        const float* const address = locked;
        EXPECT_EQ(address, memory_.data());
        EXPECT_EQ(locked.as<float*>(), memory_.data());
        EXPECT_EQ(record_->locks, 1);
        EXPECT_EQ(record_->lastOperation, LOCK_FOR_WRITE);
        EXPECT_EQ(record_->unlocks, 0);
    }
    EXPECT_EQ(record_->unlocks, 1);
}

TEST_F(LockedMemoryTest, IsNotLockedUnlessRead) {
    { const LockedMemory<void> locked(&allocator_, memory_.data()); }
    EXPECT_EQ(record_->locks, 0);
    EXPECT_EQ(record_->unlocks, 0);
}

TEST_F(LockedMemoryTest, ConstMemoryIsLockedForReading) {
    const LockedMemory<const void> locked(&allocator_, memory_.data());
    EXPECT_EQ(locked.as<const float*>()[1], 2.5F);
    EXPECT_EQ(record_->lastOperation, LOCK_FOR_READ);
}

TEST_F(LockedMemoryTest, MovingTransfersTheLock) {
    {
        LockedMemory<void> first(&allocator_, memory_.data());
        EXPECT_EQ(first.as<float*>(), memory_.data());
        const LockedMemory<void> second(std::move(first));
        EXPECT_EQ(second.as<float*>(), memory_.data());
    }
    EXPECT_EQ(record_->locks, 1);
    EXPECT_EQ(record_->unlocks, 1);
}

TEST_F(LockedMemoryTest, IsMoveOnly) {
    EXPECT_FALSE(std::is_copy_constructible_v<LockedMemory<void>>);
    EXPECT_TRUE(std::is_move_constructible_v<LockedMemory<void>>);
}

TEST_F(LockedMemoryTest, UntypedMemoryConvertsToAPointerOfAnyType) {
    const LockedMemory<void> locked(&allocator_, memory_.data());
    float* const typed = locked;
    const void* const untyped = locked;
    EXPECT_EQ(typed, memory_.data());
    EXPECT_EQ(untyped, memory_.data());
    EXPECT_FALSE((std::is_convertible_v<LockedMemory<const void>, float*>));
    EXPECT_TRUE((std::is_convertible_v<LockedMemory<const void>, const float*>));
}

TEST_F(LockedMemoryTest, TypedMemoryIsIndexed) {
    const LockedMemory<float> locked(&allocator_, memory_.data());
    locked[1] = 7.5F;
    EXPECT_EQ(memory_[1], 7.5F);
}

TEST_F(LockedMemoryTest, IsNullWithoutAHandle) {
    const LockedMemory<void> locked(&allocator_, nullptr);
    EXPECT_TRUE(locked == nullptr);
    EXPECT_EQ(locked.as<char*>(), nullptr);
    EXPECT_EQ(record_->locks, 0);
}

}  // namespace
}  // namespace InferenceEngine
