#pragma once

#include <iostream>
#include <sstream>
#include <string>

namespace VelmoraQuavin::testing {

/// Catches what is written to std::cout while it lives.
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

/// Sends std::cout where std::cerr goes, for the rest of the process: death tests look at that.
inline void sendOutputToErrorStream() {
    std::cout.rdbuf(std::cerr.rdbuf());
}

}  // namespace VelmoraQuavin::testing
