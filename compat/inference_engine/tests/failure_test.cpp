#include "failure.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace InferenceEngine::runtime {
namespace {

TEST(UsefulTextTest, OmitsSourcePositions) {
    EXPECT_EQ(usefulText("Exception from src/a.cpp:105:\n"
                         "Check 'x == y' failed at src/b.cpp:219:\n"
                         "Error parsing start element tag at offset 368\n\n\n"),
              "Error parsing start element tag at offset 368");
}

TEST(UsefulTextTest, KeepsEveryOtherLine) {
    EXPECT_EQ(usefulText("Exception from src/a.cpp:105:\n  first\r\nExceptional: second\n"),
              "first Exceptional: second");
    EXPECT_EQ(usefulText(""), "");
}

TEST(AnswerTest, LeavesTheResponseAloneOnSuccess) {
    ResponseDesc response;
    std::strcpy(response.msg, "before");
    EXPECT_EQ(answer(&response, [] {}), StatusCode::OK);
    EXPECT_STREQ(response.msg, "before");
}

TEST(AnswerTest, ReturnsTheStatusAndTextOfAFailure) {
    ResponseDesc response;
    EXPECT_EQ(answer(&response, [] { throw Failure(StatusCode::NOT_FOUND, "gone"); }),
              StatusCode::NOT_FOUND);
    EXPECT_STREQ(response.msg, "gone");
}

TEST(AnswerTest, ReturnsAStatusForAnyException) {
    ResponseDesc response;
    EXPECT_EQ(answer(&response, [] { throw std::bad_alloc(); }), StatusCode::GENERAL_ERROR);
    EXPECT_STREQ(response.msg, std::bad_alloc().what());
    // NOLINTNEXTLINE(bugprone-std-exception-baseclass): any exception, as the test says
    EXPECT_EQ(answer(&response, [] { throw 7; }), StatusCode::UNEXPECTED);
}

TEST(AnswerTest, WorksWithoutAResponse) {
    EXPECT_EQ(answer(nullptr, [] { throw Failure(StatusCode::NOT_FOUND, "gone"); }),
              StatusCode::NOT_FOUND);
}

TEST(AnswerTest, TruncatesATextThatIsTooLong) {
    ResponseDesc response;
    answer(&response, [] { throw Failure(StatusCode::NOT_FOUND, std::string(5000, 'x')); });
    EXPECT_EQ(std::string(response.msg), std::string(4095, 'x'));
}

}  // namespace
}  // namespace InferenceEngine::runtime
