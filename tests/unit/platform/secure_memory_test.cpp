#include "platform/secure_memory.h"

#include <gtest/gtest.h>

#include <string>

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(WipeMemory, ZeroesTheGivenBytesAndNoOthers) {
    std::string bytes = "before secret after";
    wipeMemory(bytes.data() + 7, 6);
    EXPECT_EQ(bytes, std::string("before ") + std::string(6, '\0') + " after");
}

TEST(WipeMemory, AcceptsZeroBytes) {
    std::string bytes = "content";
    wipeMemory(bytes.data(), 0);
    EXPECT_EQ(bytes, "content");
    wipeMemory(nullptr, 0);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
