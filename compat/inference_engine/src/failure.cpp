#include "failure.hpp"

#include <algorithm>
#include <cstring>
#include <sstream>

namespace InferenceEngine::runtime {
namespace {

bool startsWith(const std::string& text, const char* start) {
    return text.rfind(start, 0) == 0;
}

/** Lines such as "Exception from src/core.cpp:105:" and "Check '...' failed at src/core.cpp:105:".
 */
bool isSourcePosition(const std::string& line) {
    return startsWith(line, "Exception from ") ||
           (startsWith(line, "Check '") && line.find(" failed at ") != std::string::npos);
}

void respond(ResponseDesc* response, const char* text) noexcept {
    if (response == nullptr) {
        return;
    }
    const std::size_t length = std::min(std::strlen(text), sizeof(response->msg) - 1);
    std::memcpy(response->msg, text, length);
    response->msg[length] = '\0';
}

}  // namespace

std::string usefulText(const std::string& runtimeText) {
    std::istringstream lines(runtimeText);
    std::string useful;
    for (std::string line; std::getline(lines, line);) {
        line.erase(0, line.find_first_not_of(" \t\r"));
        line.erase(line.find_last_not_of(" \t\r") + 1);
        if (line.empty() || isSourcePosition(line)) {
            continue;
        }
        useful += (useful.empty() ? "" : " ") + line;
    }
    return useful;
}

StatusCode answerCurrentException(ResponseDesc* response) noexcept {
    try {
        throw;
    } catch (const Failure& failure) {
        respond(response, failure.what());
        return failure.status();
    } catch (const std::exception& exception) {
        respond(response, exception.what());
        return StatusCode::GENERAL_ERROR;
    } catch (...) {
        respond(response, "Unknown exception");
        return StatusCode::UNEXPECTED;
    }
}

}  // namespace InferenceEngine::runtime
