#include "engine/openvino/output_pool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <thread>
#include <vector>

#include "allocation_watch.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::OutputPool;

class OutputPoolTest : public ::testing::Test {
protected:
    // The pool's blocks, in use or kept.
    int blocks() const { return alignedBlocksInUse() - before_; }

    const int before_ = alignedBlocksInUse();
    std::shared_ptr<OutputPool> pool_ = OutputPool::make();
};

TEST_F(OutputPoolTest, ReusesTheMostRecentlyFreedBlockFirst) {
    void* const first = pool_->alloc(100);
    void* const second = pool_->alloc(100);
    EXPECT_NE(first, second);
    EXPECT_TRUE(pool_->free(first));
    EXPECT_TRUE(pool_->free(second));
    EXPECT_EQ(pool_->alloc(100), second);
    EXPECT_EQ(pool_->alloc(100), first);
    pool_->free(first);
    pool_->free(second);
}

TEST_F(OutputPoolTest, KeepsAtMostTwoFreeBlocks) {
    std::vector<void*> handles;
    for (int i = 0; i < 5; ++i) {
        handles.push_back(pool_->alloc(100));
    }
    EXPECT_EQ(blocks(), 5);
    for (void* const handle : handles) {
        pool_->free(handle);
    }
    EXPECT_EQ(blocks(), 2);
    // The first two blocks returned are the ones kept.
    EXPECT_EQ(pool_->alloc(100), handles[1]);
    EXPECT_EQ(pool_->alloc(100), handles[0]);
    pool_->free(handles[0]);
    pool_->free(handles[1]);
}

TEST_F(OutputPoolTest, NeverReusesABlockForAnotherSize) {
    void* const block = pool_->alloc(128);
    pool_->free(block);
    void* const larger = pool_->alloc(129);
    void* const smaller = pool_->alloc(127);
    EXPECT_NE(larger, block);
    EXPECT_NE(smaller, block);
    EXPECT_EQ(pool_->alloc(128), block);
    for (void* const handle : {larger, smaller, block}) {
        pool_->free(handle);
    }
}

TEST_F(OutputPoolTest, ClosingFreesUnusedBlocks) {
    void* const used = pool_->alloc(100);
    pool_->free(pool_->alloc(100));
    EXPECT_EQ(blocks(), 2);
    pool_->close();
    EXPECT_EQ(blocks(), 1);
    std::memset(used, 1, 100);
    pool_->free(used);
    EXPECT_EQ(blocks(), 0);
}

TEST_F(OutputPoolTest, KeepsNothingOnceClosed) {
    pool_->close();
    void* const block = pool_->alloc(100);
    ASSERT_NE(block, nullptr);
    std::memset(block, 1, 100);
    EXPECT_TRUE(pool_->free(block));
    EXPECT_EQ(blocks(), 0);
    pool_->close();  // again
    EXPECT_EQ(blocks(), 0);
}

TEST_F(OutputPoolTest, DestructionFreesKeptBlocks) {
    pool_->free(pool_->alloc(100));
    EXPECT_EQ(blocks(), 1);
    pool_.reset();
    EXPECT_EQ(blocks(), 0);
}

TEST_F(OutputPoolTest, ABlobOutlivesThePoolsOwner) {
    const InferenceEngine::TensorDesc description(InferenceEngine::Precision::FP32, {1, 4},
                                                  InferenceEngine::ANY);
    auto blob = InferenceEngine::make_shared_blob<float>(
        description, std::static_pointer_cast<InferenceEngine::IAllocator>(pool_));
    blob->allocate();
    const std::weak_ptr<OutputPool> observed = pool_;
    pool_->close();
    pool_.reset();
    ASSERT_FALSE(observed.expired());
    auto* const values = blob->buffer().as<float*>();
    ASSERT_NE(values, nullptr);
    std::fill_n(values, 4, 1.5F);
    EXPECT_EQ(blob->cbuffer().as<const float*>()[3], 1.5F);
    blob.reset();
    EXPECT_TRUE(observed.expired());
    EXPECT_EQ(blocks(), 0);
}

TEST_F(OutputPoolTest, ABlobsMemoryIsReusedByTheNextOne) {
    const InferenceEngine::TensorDesc description(InferenceEngine::Precision::FP32, {1, 4},
                                                  InferenceEngine::ANY);
    const auto makeBlob = [&] {
        auto blob = InferenceEngine::make_shared_blob<float>(
            description, std::static_pointer_cast<InferenceEngine::IAllocator>(pool_));
        blob->allocate();
        return blob;
    };
    auto blob = makeBlob();
    const void* const address = blob->buffer().as<void*>();
    blob.reset();
    EXPECT_EQ(makeBlob()->buffer().as<void*>(), address);
}

TEST_F(OutputPoolTest, BlocksAreAlignedForTheWidestRegisters) {
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{63}, std::size_t{4097}}) {
        void* const block = pool_->alloc(size);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 64, 0U);
        EXPECT_EQ(pool_->lock(block, InferenceEngine::LOCK_FOR_WRITE), block);
        pool_->unlock(block);
        pool_->free(block);
    }
}

TEST_F(OutputPoolTest, AnUnallocatableSizeReturnsNull) {
    EXPECT_EQ(pool_->alloc(std::numeric_limits<std::size_t>::max()), nullptr);
}

TEST_F(OutputPoolTest, AcceptsNullFromABlobWithoutMemory) {
    EXPECT_FALSE(pool_->free(nullptr));
    void* const block = pool_->alloc(100);
    EXPECT_NE(block, nullptr);
    EXPECT_TRUE(pool_->free(block));
    EXPECT_EQ(blocks(), 1);
    pool_->close();
    EXPECT_FALSE(pool_->free(nullptr));
}

// Every thread fills its blocks with its own mark, so a block handed to two threads would show.
TEST_F(OutputPoolTest, SeveralThreadsCanUseThePoolAtOnce) {
    constexpr std::size_t kSize = 256;
    constexpr int kTurns = 20000;
    std::atomic<int> damaged{0};
    const auto work = [&](unsigned char mark) {
        for (int round = 0; round < kTurns; ++round) {
            auto* const block = static_cast<unsigned char*>(pool_->alloc(kSize));
            std::memset(block, mark, kSize);
            if (round % 64 == 0) {
                std::this_thread::yield();
            }
            damaged += std::count(block, block + kSize, mark) == kSize ? 0 : 1;
            pool_->free(block);
        }
    };
    std::vector<std::thread> threads;
    for (unsigned char mark = 1; mark <= 4; ++mark) {
        threads.emplace_back(work, mark);
    }
    pool_->close();  // while the threads are running
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(damaged, 0);
    EXPECT_EQ(blocks(), 0);
}

// A block freed on another thread is reused only after everything written there.
TEST_F(OutputPoolTest, BlocksCanBeFreedOnAnotherThread) {
    std::vector<void*> handed(4);
    for (int round = 0; round < 200; ++round) {
        for (void*& handle : handed) {
            handle = pool_->alloc(64);
            std::memset(handle, 0, 64);
        }
        std::thread other([&] {
            for (void* const handle : handed) {
                std::memset(handle, 1, 64);
                pool_->free(handle);
            }
        });
        void* const mine = pool_->alloc(64);
        std::memset(mine, 2, 64);
        pool_->free(mine);
        other.join();
    }
    EXPECT_EQ(blocks(), 2);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
