// Running a loaded network.
#pragma once

#include <memory>
#include <string>

#include "ie/blob.hpp"
#include "ie/common.hpp"
#include "ie/release.hpp"

namespace InferenceEngine {

/**
 * Executes a loaded network, one run at a time. Blobs are bound without copying. Use it from one
 * thread at a time. A failure is reported as a status, with a text in the response if there is one.
 */
class IInferRequest : public details::IRelease {
public:
    using Ptr = std::shared_ptr<IInferRequest>;

    virtual StatusCode SetBlob(const char* name, const Blob::Ptr& blob,
                               ResponseDesc* response) noexcept = 0;

    /** Runs the network on the blobs set since the last run, then releases them, even on failure.
     */
    virtual StatusCode Infer(ResponseDesc* response) noexcept = 0;

protected:
    ~IInferRequest() override = default;
};

/** A handle to a request that throws its failures; converts to false if it holds none. */
class InferRequest {
public:
    using Ptr = std::shared_ptr<InferRequest>;

    InferRequest() = default;
    explicit InferRequest(IInferRequest::Ptr request);

    /** @throws the exception for the status: unknown name, or a blob that does not fit the port */
    void SetBlob(const std::string& name, const Blob::Ptr& blob);

    /** @throws the exception for the status: a port without a blob, or a failure of the device */
    void Infer();

    explicit operator bool() const noexcept { return request_ != nullptr; }
    bool operator!() const noexcept { return request_ == nullptr; }

private:
    void check(StatusCode status);
    IInferRequest& request() const;

    IInferRequest::Ptr request_;
    // Kept instead of created for each call: zero-filling it would cost more than the call.
    ResponseDesc response_;
};

}  // namespace InferenceEngine
