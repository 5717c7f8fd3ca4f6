#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "quavin/status.h"

namespace VelmoraQuavin {

// Found by GoogleTest, so that failures show code and text.
inline void PrintTo(const QuavinStatus& status, std::ostream* stream) {
    *stream << "status " << status.getCode() << " \"" << status.getDescription() << '"';
}

namespace testing {

/// Matches a status with exactly this code and text.
MATCHER_P2(IsStatus, code, text, "") {
    return arg.getCode() == code && arg.getDescription() == String(text);
}

/// Matches a status with exactly this code and a text that matches `textMatcher`.
MATCHER_P2(IsStatusWith, code, textMatcher, "") {
    return arg.getCode() == code &&
           ::testing::ExplainMatchResult(textMatcher, arg.getDescription().str(), result_listener);
}

/// Matches success without a text.
MATCHER(IsOk, "") {
    return arg.getCode() == SUCCESS && arg.getDescription().empty();
}

/// Runs `action` and expects an exception of exactly the class, code and text given.
template <typename Expected, typename Action>
void expectThrows(Action action, STATUS_CODE code, const std::string& text) {
    try {
        action();
        ADD_FAILURE() << "nothing was thrown; expected \"" << text << '"';
    } catch (const Exception& exception) {
        EXPECT_EQ(typeid(exception), typeid(Expected));
        EXPECT_EQ(exception.getStatusCode(), code);
        EXPECT_EQ(exception.what(), text);
    } catch (const std::exception& exception) {
        ADD_FAILURE() << "thrown from outside the family: " << exception.what();
    }
}

}  // namespace testing
}  // namespace VelmoraQuavin
