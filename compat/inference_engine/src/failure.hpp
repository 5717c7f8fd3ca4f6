// Failures inside the adapter, and their translation into statuses at its boundary.
#pragma once

#include <stdexcept>
#include <string>

#include "ie/common.hpp"

namespace InferenceEngine::runtime {

/** A failure with the status it is translated to. Never leaves the adapter. */
class Failure : public std::runtime_error {
public:
    Failure(StatusCode status, const std::string& message)
        : std::runtime_error(message), status_(status) {}

    StatusCode status() const noexcept { return status_; }

private:
    StatusCode status_;
};

/** The useful part of a runtime message: without source positions, joined into one line. */
std::string usefulText(const std::string& runtimeText);

/** Puts the current exception's text into the response, if there is one; returns its status. */
StatusCode answerCurrentException(ResponseDesc* response) noexcept;

/** Runs an operation of an interface; the response is touched only if it fails. */
template <class Operation>
StatusCode answer(ResponseDesc* response, Operation&& operation) noexcept {
    try {
        operation();
        return OK;
    } catch (...) {
        return answerCurrentException(response);
    }
}

}  // namespace InferenceEngine::runtime
