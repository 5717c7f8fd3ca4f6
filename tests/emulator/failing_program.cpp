// Ends in the way that the selected test names; all but the first are failures.

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
