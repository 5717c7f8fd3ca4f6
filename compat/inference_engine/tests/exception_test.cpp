#include <gtest/gtest.h>

#include <inference_engine.hpp>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace InferenceEngine {
namespace {

/** Returns the text of the exception thrown for a status, which must be of this class. */
template <class Expected>
std::string textThrownFor(StatusCode status) {
    try {
        std::string text = "what went wrong";
        details::extract_exception(status, text.data());
    } catch (const Expected& exception) {
        return exception.what();
    }
}

TEST(ExceptionTest, EachStatusThrowsItsClassWithTheText) {
    EXPECT_EQ(textThrownFor<NotImplemented>(NOT_IMPLEMENTED), "what went wrong");
    EXPECT_EQ(textThrownFor<NetworkNotLoaded>(NETWORK_NOT_LOADED), "what went wrong");
    EXPECT_EQ(textThrownFor<ParameterMismatch>(PARAMETER_MISMATCH), "what went wrong");
    EXPECT_EQ(textThrownFor<NotFound>(NOT_FOUND), "what went wrong");
    EXPECT_EQ(textThrownFor<OutOfBounds>(OUT_OF_BOUNDS), "what went wrong");
    EXPECT_EQ(textThrownFor<Unexpected>(UNEXPECTED), "what went wrong");
    EXPECT_EQ(textThrownFor<RequestBusy>(REQUEST_BUSY), "what went wrong");
    EXPECT_EQ(textThrownFor<ResultNotReady>(RESULT_NOT_READY), "what went wrong");
    EXPECT_EQ(textThrownFor<NotAllocated>(NOT_ALLOCATED), "what went wrong");
    EXPECT_EQ(textThrownFor<InferNotStarted>(INFER_NOT_STARTED), "what went wrong");
    EXPECT_EQ(textThrownFor<NetworkNotRead>(NETWORK_NOT_READ), "what went wrong");
    EXPECT_EQ(textThrownFor<details::InferenceEngineException>(GENERAL_ERROR), "what went wrong");
}

TEST(ExceptionTest, AStatusWithoutAClassThrowsTheGeneralOne) {
    EXPECT_EQ(textThrownFor<details::InferenceEngineException>(static_cast<StatusCode>(-99)),
              "what went wrong");
}

TEST(ExceptionTest, ANullTextCountsAsEmpty) {
    try {
        details::extract_exception(NOT_FOUND, nullptr);
    } catch (const NotFound& exception) {
        EXPECT_STREQ(exception.what(), "");
    }
}

TEST(ExceptionTest, OnlyTheGeneralClassIsNotALogicError) {
    EXPECT_TRUE((std::is_base_of_v<std::logic_error, NotImplemented>));
    EXPECT_TRUE((std::is_base_of_v<std::logic_error, NetworkNotRead>));
    EXPECT_TRUE((std::is_base_of_v<std::exception, details::InferenceEngineException>));
    EXPECT_FALSE((std::is_base_of_v<std::logic_error, details::InferenceEngineException>));
}

TEST(ExceptionTest, AResponseStartsAsZeros) {
    const ResponseDesc response;
    EXPECT_EQ(std::string(response.msg, sizeof(response.msg)), std::string(4096, '\0'));
}

}  // namespace
}  // namespace InferenceEngine
