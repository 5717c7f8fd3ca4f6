// The exceptions of the interface: one class per status code, and a general one for the rest.
#pragma once

#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

#include "ie/common.hpp"

namespace InferenceEngine {

class NotImplemented : public std::logic_error {
    using std::logic_error::logic_error;
};
class NetworkNotLoaded : public std::logic_error {
    using std::logic_error::logic_error;
};
class ParameterMismatch : public std::logic_error {
    using std::logic_error::logic_error;
};
class NotFound : public std::logic_error {
    using std::logic_error::logic_error;
};
class OutOfBounds : public std::logic_error {
    using std::logic_error::logic_error;
};
class Unexpected : public std::logic_error {
    using std::logic_error::logic_error;
};
class RequestBusy : public std::logic_error {
    using std::logic_error::logic_error;
};
class ResultNotReady : public std::logic_error {
    using std::logic_error::logic_error;
};
class NotAllocated : public std::logic_error {
    using std::logic_error::logic_error;
};
class InferNotStarted : public std::logic_error {
    using std::logic_error::logic_error;
};
class NetworkNotRead : public std::logic_error {
    using std::logic_error::logic_error;
};

namespace details {

/** The general exception of the interface; not a std::logic_error, unlike the typed ones. */
class InferenceEngineException : public std::exception {
public:
    explicit InferenceEngineException(const std::string& message)
        : message_(std::make_shared<const std::string>(message)) {}

    const char* what() const noexcept override { return message_->c_str(); }

private:
    // Shared, because copying an exception must not throw.
    std::shared_ptr<const std::string> message_;
};

/**
 * Throws the exception for a failing status.
 *
 * @param status any code; one without an exception class throws InferenceEngineException
 * @param message the text of the exception; null counts as empty
 */
[[noreturn]] void extract_exception(StatusCode status, char* message);

}  // namespace details
}  // namespace InferenceEngine
