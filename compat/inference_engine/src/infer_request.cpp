#include "ie/infer_request.hpp"

#include <utility>

#include "ie/exception.hpp"

namespace InferenceEngine {

InferRequest::InferRequest(IInferRequest::Ptr request) : request_(std::move(request)) {}

void InferRequest::SetBlob(const std::string& name, const Blob::Ptr& blob) {
    check(request().SetBlob(name.c_str(), blob, &response_));
}

void InferRequest::Infer() {
    check(request().Infer(&response_));
}

void InferRequest::check(StatusCode status) {
    if (status == OK) {
        return;
    }
    std::string message = response_.msg;
    // Cleared, because the next failure may not set a text.
    response_.msg[0] = '\0';
    details::extract_exception(status, message.data());
}

IInferRequest& InferRequest::request() const {
    if (!request_) {
        throw details::InferenceEngineException("InferRequest was not initialized.");
    }
    return *request_;
}

}  // namespace InferenceEngine
