#include "engine/openvino/secret_allocator.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>

#include "allocation_watch.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::makeSecretAllocator;

std::shared_ptr<InferenceEngine::TBlob<std::uint8_t>> secretBlob(std::size_t size) {
    auto blob = InferenceEngine::make_shared_blob<std::uint8_t>(
        InferenceEngine::TensorDesc(InferenceEngine::Precision::U8, {size}, InferenceEngine::ANY),
        makeSecretAllocator());
    blob->allocate();
    return blob;
}

TEST(SecretAllocator, OverwritesABlockBeforeFreeingIt) {
    const auto allocator = makeSecretAllocator();
    for (const std::size_t size : {1U, 16U, 100U, 65536U}) {
        void* const handle = allocator->alloc(size);
        ASSERT_NE(handle, nullptr);
        void* const memory = allocator->lock(handle);
        std::memset(memory, 0xA5, size);
        allocator->unlock(handle);
        FreeWatch watch;
        watch.watch(memory, size);
        EXPECT_TRUE(allocator->free(handle));
        EXPECT_TRUE(watch.wasFreed());
        EXPECT_TRUE(watch.wasZeroWhenFreed());
    }
}

TEST(SecretAllocator, OverwritesABlobsMemoryWhenItsLastHolderReleasesIt) {
    auto blob = secretBlob(64);
    auto other = blob;
    std::memset(blob->buffer().as<void*>(), 0xA5, 64);
    FreeWatch watch;
    watch.watch(blob->buffer().as<void*>(), 64);
    blob.reset();
    EXPECT_FALSE(watch.wasFreed());
    EXPECT_EQ(other->cbuffer().as<const std::uint8_t*>()[63], 0xA5);
    other.reset();
    EXPECT_TRUE(watch.wasFreed());
    EXPECT_TRUE(watch.wasZeroWhenFreed());
}

TEST(SecretAllocator, TheWatchDetectsMemoryThatIsNotOverwritten) {
    const std::shared_ptr<InferenceEngine::IAllocator> plain =
        InferenceEngine::details::shared_from_irelease(InferenceEngine::CreateDefaultAllocator());
    void* const handle = plain->alloc(64);
    std::memset(handle, 0xA5, 64);
    FreeWatch watch;
    watch.watch(handle, 64);
    plain->free(handle);
    EXPECT_TRUE(watch.wasFreed());
    EXPECT_FALSE(watch.wasZeroWhenFreed());
}

TEST(SecretAllocator, ReturnsABlockForZeroBytes) {
    const auto blob = secretBlob(0);
    EXPECT_NE(blob->buffer().as<void*>(), nullptr);
    EXPECT_EQ(blob->byteSize(), 0U);
}

TEST(SecretAllocator, AcceptsNullFromABlobWithoutMemory) {
    EXPECT_FALSE(makeSecretAllocator()->free(nullptr));
}

TEST(SecretAllocator, DeallocatingAnUnallocatedBlobIsHarmless) {
    const auto blob = InferenceEngine::make_shared_blob<std::uint8_t>(
        InferenceEngine::TensorDesc(InferenceEngine::Precision::U8, {16}, InferenceEngine::ANY),
        makeSecretAllocator());
    EXPECT_FALSE(blob->deallocate());
    EXPECT_EQ(blob->buffer().as<void*>(), nullptr);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
