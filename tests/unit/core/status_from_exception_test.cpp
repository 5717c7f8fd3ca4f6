#include <gtest/gtest.h>

#include <exception>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>

#include "quavin/status.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using testing::IsStatus;

QuavinStatus statusOf(const std::function<void()>& failing) {
    try {
        failing();
    } catch (...) {
        return getStatusFromCurrentException();
    }
    return {SUCCESS, "nothing was thrown"};
}

class StandardException : public std::exception {
public:
    explicit StandardException(const char* text) : text_(text) {}
    const char* what() const noexcept override { return text_; }

private:
    const char* text_;
};

class HostException : public RangeException {
public:
    using RangeException::RangeException;
};

TEST(StatusFromExceptionTest, AnExceptionKeepsItsCodeAndText) {
    EXPECT_THAT(statusOf([] { throw Exception("a message", ML_FRAMEWORK_ERROR); }),
                IsStatus(ML_FRAMEWORK_ERROR, "a message"));
}

TEST(StatusFromExceptionTest, AHostsDerivedClassKeepsTheCodeOfItsBase) {
    EXPECT_THAT(statusOf([] { throw HostException("too far"); }),
                IsStatus(OUT_OF_RANGE, "too far"));
}

TEST(StatusFromExceptionTest, TheTextStopsAtTheFirstZeroByte) {
    EXPECT_THAT(statusOf([] { throw FileException(String("before\0after", 12)); }),
                IsStatus(FILE_ERROR, "before"));
    EXPECT_THAT(statusOf([] { throw std::runtime_error(std::string("before\0after", 12)); }),
                IsStatus(FAILURE, "before"));
}

TEST(StatusFromExceptionTest, AnExceptionWithoutAMessageHasAnEmptyText) {
    EXPECT_THAT(statusOf([] { throw FileException(""); }), IsStatus(FILE_ERROR, ""));
}

TEST(StatusFromExceptionTest, AStandardExceptionBecomesAFailureWithItsText) {
    EXPECT_THAT(statusOf([] { throw std::out_of_range("position 7"); }),
                IsStatus(FAILURE, "position 7"));
    EXPECT_THAT(statusOf([] { throw StandardException("of its own"); }),
                IsStatus(FAILURE, "of its own"));
}

TEST(StatusFromExceptionTest, AnAllocationFailureKeepsTheTextOfItsClass) {
    EXPECT_THAT(statusOf([] { throw std::bad_alloc(); }),
                IsStatus(FAILURE, std::bad_alloc().what()));
}

TEST(StatusFromExceptionTest, AStandardExceptionWithoutATextIsAnUnknownException) {
    EXPECT_THAT(statusOf([] { throw std::exception(); }), IsStatus(FAILURE, "Unknown exception"));
    EXPECT_THAT(statusOf([] { throw StandardException(nullptr); }),
                IsStatus(FAILURE, "Unknown exception"));
    EXPECT_THAT(statusOf([] { throw StandardException(""); }),
                IsStatus(FAILURE, "Unknown exception"));
    EXPECT_THAT(statusOf([] { throw std::runtime_error(""); }),
                IsStatus(FAILURE, "Unknown exception"));
}

TEST(StatusFromExceptionTest, AnythingElseIsAnUnknownError) {
    EXPECT_THAT(statusOf([] { throw 42; }), IsStatus(FAILURE, "unknown error occured"));
    EXPECT_THAT(statusOf([] { throw "a text"; }), IsStatus(FAILURE, "unknown error occured"));
    EXPECT_THAT(statusOf([] { throw String("a text"); }),
                IsStatus(FAILURE, "unknown error occured"));
}

TEST(StatusFromExceptionTest, ConvertsTheInnermostExceptionBeingHandled) {
    try {
        throw RangeException("outer");
    } catch (...) {
        EXPECT_THAT(statusOf([] { throw FileException("inner"); }), IsStatus(FILE_ERROR, "inner"));
        EXPECT_THAT(getStatusFromCurrentException(), IsStatus(OUT_OF_RANGE, "outer"));
    }
}

TEST(StatusFromExceptionTest, TheExceptionCanStillBeRethrown) {
    const auto convertAndRethrow = [] {
        try {
            throw RangeException("too far");
        } catch (...) {
            EXPECT_THAT(getStatusFromCurrentException(), IsStatus(OUT_OF_RANGE, "too far"));
            throw;
        }
    };
    testing::expectThrows<RangeException>(convertAndRethrow, OUT_OF_RANGE, "too far");
}

TEST(StatusFromExceptionDeathTest, TerminatesIfNoExceptionIsBeingHandled) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(getStatusFromCurrentException(), "terminate called");
}

}  // namespace
}  // namespace VelmoraQuavin
