#include "engine/cache/entry_buffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <utility>

#include "allocation_watch.h"

namespace VelmoraQuavin::internal {
namespace {

using testing::FreeWatch;

std::string textOf(const EntryBuffer& buffer) {
    return {reinterpret_cast<const char*>(buffer.content()), buffer.size()};
}

TEST(EntryBuffer, HoldsWhatIsAppended) {
    EntryBuffer buffer(EntryBuffer::Content::kPlain);
    EXPECT_EQ(buffer.size(), 0U);
    std::string expected;
    for (int i = 0; i < 1000; ++i) {
        const std::string part = std::to_string(i);
        buffer.append(part.data(), part.size());
        expected += part;
    }
    buffer.append(nullptr, 0);
    EXPECT_EQ(textOf(buffer), expected);
}

TEST(EntryBuffer, KeepsItsContentAndHeaderWhenItGrowsAndShrinks) {
    EntryBuffer buffer(EntryBuffer::Content::kPlain, 3);
    std::memset(buffer.header(), 'h', EntryBuffer::kHeaderSize);
    buffer.append("abc", 3);
    buffer.resize(100'000);
    buffer.resize(2);
    buffer.reserve(300'000);
    EXPECT_EQ(textOf(buffer), "ab");
    EXPECT_EQ(std::string(reinterpret_cast<char*>(buffer.header()), EntryBuffer::kHeaderSize),
              std::string(EntryBuffer::kHeaderSize, 'h'));
}

TEST(EntryBuffer, StaysInPlaceWithinItsCapacity) {
    EntryBuffer buffer(EntryBuffer::Content::kPlain, 1000);
    const unsigned char* const content = buffer.content();
    buffer.resize(500);
    buffer.append(std::string(500, 'x').data(), 500);
    EXPECT_EQ(buffer.content(), content);
}

TEST(EntryBuffer, ItsContentFollowsTheHeaderAndIsAligned) {
    EntryBuffer buffer(EntryBuffer::Content::kPlain, 1);
    EXPECT_EQ(buffer.content(), buffer.header() + EntryBuffer::kHeaderSize);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.content()) % 64, 0U);
}

TEST(EntryBuffer, SecretContentIsOverwrittenBeforeItIsFreed) {
    FreeWatch watch;
    {
        EntryBuffer buffer(EntryBuffer::Content::kSecret, 100);
        buffer.resize(100);
        std::memset(buffer.content(), 0xA5, 100);
        watch.watch(buffer.content(), 100);
        buffer.resize(10);
        EntryBuffer moved = std::move(buffer);
        EXPECT_FALSE(watch.wasFreed());
    }
    EXPECT_TRUE(watch.wasFreed());
    EXPECT_TRUE(watch.wasZeroWhenFreed());
}

TEST(EntryBuffer, SecretContentIsOverwrittenWhereItWasWhenTheBufferGrows) {
    EntryBuffer buffer(EntryBuffer::Content::kSecret, 100);
    buffer.resize(100);
    std::memset(buffer.content(), 0xA5, 100);
    FreeWatch watch;
    watch.watch(buffer.content(), 100);
    buffer.resize(101);
    EXPECT_TRUE(watch.wasFreed());
    EXPECT_TRUE(watch.wasZeroWhenFreed());
    EXPECT_EQ(buffer.content()[99], 0xA5);
}

TEST(EntryBuffer, PlainContentIsNotOverwritten) {
    FreeWatch watch;
    {
        EntryBuffer buffer(EntryBuffer::Content::kPlain, 100);
        buffer.resize(100);
        std::memset(buffer.content(), 0xA5, 100);
        watch.watch(buffer.content(), 100);
    }
    EXPECT_TRUE(watch.wasFreed());
    EXPECT_FALSE(watch.wasZeroWhenFreed());
}

TEST(EntryBuffer, ThrowsForASizeThatCannotBeHad) {
    constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max();
    EXPECT_THROW(EntryBuffer(EntryBuffer::Content::kPlain, kMost), std::bad_alloc);
    EntryBuffer buffer(EntryBuffer::Content::kPlain);
    buffer.append("abc", 3);
    EXPECT_THROW(buffer.resize(kMost - EntryBuffer::kHeaderSize), std::bad_alloc);
    EXPECT_THROW(buffer.append("", kMost - 2), std::bad_alloc);
    EXPECT_EQ(textOf(buffer), "abc");
}

}  // namespace
}  // namespace VelmoraQuavin::internal
