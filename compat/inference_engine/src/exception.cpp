#include "ie/exception.hpp"

namespace InferenceEngine::details {

void extract_exception(StatusCode status, char* message) {
    const std::string text = message == nullptr ? "" : message;
    switch (status) {
        case NOT_IMPLEMENTED:
            throw NotImplemented(text);
        case NETWORK_NOT_LOADED:
            throw NetworkNotLoaded(text);
        case PARAMETER_MISMATCH:
            throw ParameterMismatch(text);
        case NOT_FOUND:
            throw NotFound(text);
        case OUT_OF_BOUNDS:
            throw OutOfBounds(text);
        case UNEXPECTED:
            throw Unexpected(text);
        case REQUEST_BUSY:
            throw RequestBusy(text);
        case RESULT_NOT_READY:
            throw ResultNotReady(text);
        case NOT_ALLOCATED:
            throw NotAllocated(text);
        case INFER_NOT_STARTED:
            throw InferNotStarted(text);
        case NETWORK_NOT_READ:
            throw NetworkNotRead(text);
        case OK:
        case GENERAL_ERROR:
            break;
    }
    throw InferenceEngineException(text);
}

}  // namespace InferenceEngine::details
