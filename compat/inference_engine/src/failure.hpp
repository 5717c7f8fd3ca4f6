// Failures inside the adapter, and how they become statuses at its edge.
#pragma once

#include <openvino/c/openvino.h>

#include <stdexcept>
#include <string>

#include "ie/common.hpp"

namespace InferenceEngine::runtime {

/** A failure with the status that it becomes. Never leaves the adapter. */
class Failure : public std::runtime_error {
public:
    Failure(StatusCode status, const std::string& message)
        : std::runtime_error(message), status_(status) {}

    StatusCode status() const noexcept { return status_; }

private:
    StatusCode status_;
};

/** The codes that the runtime shares with the interface; its others have no
 * counterpart. */
StatusCode statusOf(ov_status_e status) noexcept;

/** The lines of a text of the runtime that help a user: without source positions, in one line. */
std::string usefulText(const std::string& runtimeText);

/** Puts the current exception into the response, where there is one, and gives its status. */
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
