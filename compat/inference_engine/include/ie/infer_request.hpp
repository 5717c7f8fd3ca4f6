// Running a loaded network.
#pragma once

#include <memory>
#include <string>

#include "ie/blob.hpp"
#include "ie/common.hpp"
#include "ie/release.hpp"

namespace InferenceEngine {

/**
 * One execution at a time of a loaded network. Blobs are bound without a copy. For one thread at a
 * time; failures come as a status with a text in the response, where one is given.
 */
class IInferRequest : public details::IRelease {
public:
    using Ptr = std::shared_ptr<IInferRequest>;

    virtual StatusCode SetBlob(const char* name, const Blob::Ptr& blob,
                               ResponseDesc* response) noexcept = 0;

    /** Runs the network on the blobs set since the last run, and lets go of them, also when it
     * fails. */
    virtual StatusCode Infer(ResponseDesc* response) noexcept = 0;

protected:
    ~IInferRequest() override = default;
};

/** A handle on a request, whose failures it throws; false when it holds none. */
class InferRequest {
public:
    using Ptr = std::shared_ptr<InferRequest>;

    InferRequest() = default;
    explicit InferRequest(IInferRequest::Ptr request);

    /** @throws the exception of the status: unknown name, or a blob that does not fit the port */
    void SetBlob(const std::string& name, const Blob::Ptr& blob);

    /** @throws the exception of the status: a port without a blob, or a failure of the device */
    void Infer();

    explicit operator bool() const noexcept { return request_ != nullptr; }
    bool operator!() const noexcept { return request_ == nullptr; }

private:
    void check(StatusCode status);
    IInferRequest& request() const;

    IInferRequest::Ptr request_;
    // Kept, and not made for each call, because filling it with zeros would cost more than the
    // call.
    ResponseDesc response_;
};

}  // namespace InferenceEngine
