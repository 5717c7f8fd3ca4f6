#include "platform/child_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace VelmoraQuavin::internal::platform {
namespace {

using ::testing::HasSubstr;

// Does what the request says.
std::string work(std::string_view request) {
#if defined(_WIN32)
    if (request == "crash") {
        volatile int* const nowhere = nullptr;
        *nowhere = 1;
    }
#else
    // A sanitizer would report a real crash itself and end the process in another way.
    if (request == "crash") {
        static_cast<void>(std::raise(SIGSEGV));
    }
    if (request == "kill") {
        static_cast<void>(std::raise(SIGKILL));
    }
#endif
    if (request == "exit") {
        std::_Exit(3);
    }
    if (request == "throw") {
        throw std::runtime_error("thrown in the child");
    }
    if (request == "nothing") {
        return {};
    }
    if (request == "too much") {
        return std::string(kLargestChildAnswer + 1, 'x');
    }
    if (request == "print") {
        static_cast<void>(std::puts("printed by the child"));
        static_cast<void>(std::fflush(stdout));
    }
    return "answer to " + std::string(request);
}

// A child that is a newly started process does its work here and never runs the tests.
const bool isParent = [] {
    if (const std::optional<int> status = serveAsChild(work)) {
        std::_Exit(*status);
    }
    return true;
}();

TEST(RunInChild, ReturnsTheAnswerOfTheWork) {
    ASSERT_TRUE(isParent);
    const ChildResult result = runInChild(work, std::string_view("one\0two\xff\n", 9));
    EXPECT_EQ(result.problem, "");
    EXPECT_EQ(result.answer, std::string("answer to one\0two\xff\n", 19));
}

TEST(RunInChild, AcceptsRequestsUpToTheLimit) {
    const std::string request(kLargestChildRequest, 'r');
    EXPECT_EQ(runInChild(work, request).answer, "answer to " + request);
}

TEST(RunInChild, RefusesLongerRequests) {
    const std::string request(kLargestChildRequest + 1, 'r');
    EXPECT_THROW(runInChild(work, request), std::runtime_error);
}

TEST(RunInChild, ReportsACrash) {
    const ChildResult result = runInChild(work, "crash");
    EXPECT_EQ(result.answer, "");
#if defined(_WIN32)
    EXPECT_EQ(result.problem, "crashed with 0xC0000005 (access violation)");
#else
    EXPECT_EQ(result.problem, "was ended by signal 11 (Segmentation fault)");
#endif
}

#if !defined(_WIN32)
TEST(RunInChild, ReportsThatAKilledProcessMayHaveRunOutOfMemory) {
    EXPECT_EQ(runInChild(work, "kill").problem,
              "was ended by signal 9 (Killed), as happens when the system runs out of memory");
}
#endif

#if !defined(_WIN32)
// Programs inherit this setting, and with it the system keeps no status of a child.
TEST(RunInChild, GetsTheStatusEvenIfSigchldWasIgnored) {
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    const std::string crashed = runInChild(work, "crash").problem;
    const std::string exited = runInChild(work, "exit").problem;
    static_cast<void>(std::signal(SIGCHLD, before));
    EXPECT_EQ(crashed, "was ended by signal 11 (Segmentation fault)");
    EXPECT_EQ(exited, "ended with status 3 and no answer");
}
#endif

TEST(RunInChild, ReportsAnExit) {
    const ChildResult result = runInChild(work, "exit");
    EXPECT_EQ(result.answer, "");
    EXPECT_EQ(result.problem, "ended with status 3 and no answer");
}

TEST(RunInChild, ReportsAnEndByAnException) {
    const ChildResult result = runInChild(work, "throw");
    EXPECT_EQ(result.answer, "");
    EXPECT_NE(result.problem, "");
}

TEST(RunInChild, RefusesAnEmptyAnswer) {
    EXPECT_THAT(runInChild(work, "nothing").problem, HasSubstr("status 0 and no answer"));
}

TEST(RunInChild, RefusesAnEndlessAnswer) {
    const ChildResult result = runInChild(work, "too much");
    EXPECT_EQ(result.answer, "");
    EXPECT_EQ(result.problem, "sent an endless answer");
}

TEST(RunInChild, KeepsWhatTheWorkPrintsOutOfStandardOutput) {
    ::testing::internal::CaptureStdout();
    const ChildResult result = runInChild(work, "print");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(result.answer, "answer to print");
}

TEST(RunInChild, RunsTheWorkAfreshEachTime) {
    for (const char* const request : {"first", "crash", "second"}) {
        const ChildResult result = runInChild(work, request);
        EXPECT_EQ(result.problem.empty(), std::string(request) != "crash") << request;
    }
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
