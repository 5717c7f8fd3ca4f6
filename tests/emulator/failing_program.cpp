// Ends in the way of the test that is asked for; each but the first is a failure.

#include <gtest/gtest.h>

#include <cstdlib>
#include <exception>

namespace {

TEST(FailingProgram, Passes) {
    SUCCEED();
}

TEST(FailingProgram, FailsAnExpectation) {
    EXPECT_EQ(1 + 1, 3);
}

TEST(FailingProgram, Exits) {
    std::_Exit(3);
}

TEST(FailingProgram, Aborts) {
    std::abort();
}

TEST(FailingProgram, Terminates) {
    std::terminate();
}

TEST(FailingProgram, Crashes) {
    volatile int* volatile nothing = nullptr;
    *nothing = 1;
}

}  // namespace
