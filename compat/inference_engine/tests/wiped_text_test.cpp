// Watches what the copy of a network's text leaves behind. A separate program, because it replaces
// the allocation functions.
#include "wiped_text.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <inference_engine.hpp>
#include <new>
#include <sstream>
#include <string>

#include "stream_content.hpp"

namespace {

/** Follows the last block of one size, from its allocation to its release. */
struct Watch {
    std::size_t size = 0;
    void* block = nullptr;
    bool released = false;
    bool wiped = false;
};
Watch watch;

void watchSize(std::size_t size) {
    watch = Watch();
    watch.size = size;
}

void release(void* block) noexcept {
    if (block != nullptr && block == watch.block) {
        const auto* const bytes = static_cast<const char*>(block);
        watch.released = true;
        watch.wiped = std::all_of(bytes, bytes + watch.size, [](char c) { return c == '\0'; });
        watch.block = nullptr;
    }
    std::free(block);
}

void* take(std::size_t size) noexcept {
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (size == watch.size && size != 0) {
        watch.block = block;
    }
    return block;
}

void* takeOrThrow(std::size_t size) {
    void* const block = take(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

}  // namespace

// All of them, because a sanitizer's versions do not call each other.
void* operator new(std::size_t size) {
    return takeOrThrow(size);
}
void* operator new[](std::size_t size) {
    return takeOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return take(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return take(size);
}
void operator delete(void* block) noexcept {
    release(block);
}
void operator delete[](void* block) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t /*size*/) noexcept {
    release(block);
}
void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept {
    release(block);
}
void operator delete[](void* block, const std::nothrow_t& /*tag*/) noexcept {
    release(block);
}

namespace InferenceEngine::runtime {
namespace {

// An unusual size that nothing else in the program has.
const std::string& secret() {
    static const std::string text = "<net>" + std::string(54321, 's') + "</net>";
    return text;
}

TEST(WipeTest, OverwritesEveryByte) {
    std::array<char, 5> bytes{'a', 'b', 'c', 'd', 'e'};
    wipe(bytes.data() + 1, 3);
    EXPECT_EQ(std::string(bytes.data(), bytes.size()), std::string("a\0\0\0e", 5));
    wipe(nullptr, 0);
}

TEST(WipedTextTest, HoldsACopy) {
    WipedText text;
    EXPECT_TRUE(text.empty());
    text.assign(secret().data(), secret().size());
    EXPECT_NE(text.data(), secret().data());
    EXPECT_EQ(std::string(text.data(), text.size()), secret());
    text.clear();
    EXPECT_TRUE(text.empty());
}

TEST(WipedTextTest, IsWipedWhenClearedReplacedAndDestroyed) {
    watchSize(secret().size());
    {
        WipedText text;
        text.assign(secret().data(), secret().size());
        text.clear();
        EXPECT_TRUE(watch.released && watch.wiped);

        watchSize(secret().size());
        text.assign(secret().data(), secret().size());
        text.assign("<a>", 3);
        EXPECT_TRUE(watch.released && watch.wiped);

        watchSize(secret().size());
        text.assign(secret().data(), secret().size());
        EXPECT_FALSE(watch.released);
    }
    EXPECT_TRUE(watch.released && watch.wiped);
}

TEST(WipedTextTest, GrowsAndShrinks) {
    WipedText text;
    std::memcpy(text.extend(3), "abc", 3);
    std::memcpy(text.extend(2), "de", 2);
    EXPECT_EQ(std::string(text.data(), text.size()), "abcde");
    text.truncate(4);
    EXPECT_EQ(std::string(text.data(), text.size()), "abcd");
}

TEST(WipedTextTest, IsWipedWhereItWasBeforeItGrew) {
    WipedText text;
    watchSize(secret().size());
    text.assign(secret().data(), secret().size());
    std::memcpy(text.extend(1), "!", 1);
    EXPECT_TRUE(watch.released && watch.wiped);
    EXPECT_EQ(std::string(text.data(), text.size()), secret() + "!");
}

TEST(WipedTextTest, IsWipedWhereItWasCutOff) {
    watchSize(secret().size());
    {
        WipedText text;
        text.assign(secret().data(), secret().size());
        text.truncate(10);
    }
    EXPECT_TRUE(watch.released && watch.wiped);
}

// What is copied has one byte of room to spare, which shows that nothing follows.
TEST(StreamContentTest, ACopyIsWipedWithItsLastOwner) {
    std::istringstream stream(secret());
    watchSize(secret().size() + 1);
    StreamContent content = contentOf(stream);
    EXPECT_EQ(content.bytes, secret());
    EXPECT_FALSE(watch.released);
    content.owner.reset();
    EXPECT_TRUE(watch.released && watch.wiped);
}

TEST(NetworkReaderTextTest, IsWipedWithAReaderThatNeverParsesIt) {
    auto reader = details::shared_from_irelease(CreateCNNNetReader());
    watchSize(secret().size());
    ASSERT_EQ(reader->ReadNetwork(secret().data(), secret().size(), nullptr), StatusCode::OK);
    EXPECT_FALSE(watch.released);
    reader.reset();
    EXPECT_TRUE(watch.released && watch.wiped);
}

TEST(NetworkReaderTextTest, IsWipedWhenReadingEnds) {
    auto reader = details::shared_from_irelease(CreateCNNNetReader());
    watchSize(secret().size());
    ASSERT_EQ(reader->ReadNetwork(secret().data(), secret().size(), nullptr), StatusCode::OK);
    // Without weights, reading fails before the runtime gets to see the text.
    EXPECT_NE(reader->SetWeights(nullptr, nullptr), StatusCode::OK);
    EXPECT_TRUE(watch.released && watch.wiped);
}

}  // namespace
}  // namespace InferenceEngine::runtime
