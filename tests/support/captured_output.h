#pragma once

#include <iostream>
#include <sstream>
#include <string>

namespace VelmoraQuavin::testing {

/// Captures what is written to std::cout during its lifetime.
class CapturedOutput {
public:
    CapturedOutput() : previous_(std::cout.rdbuf(text_.rdbuf())) {}
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;
    ~CapturedOutput() { std::cout.rdbuf(previous_); }

    std::string text() const { return text_.str(); }

private:
    std::ostringstream text_;
    std::streambuf* previous_;
};

/// Redirects std::cout to std::cerr for the rest of the process, because death tests check only
/// standard error.
inline void sendOutputToErrorStream() {
    std::cout.rdbuf(std::cerr.rdbuf());
}

}  // namespace VelmoraQuavin::testing
