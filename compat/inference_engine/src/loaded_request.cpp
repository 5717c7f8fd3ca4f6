#include "loaded_request.hpp"

#include <algorithm>
#include <string>
#include <utility>

#include "failure.hpp"
#include "runtime_call.hpp"

namespace InferenceEngine::runtime {

LoadedRequest::LoadedRequest(Handle<ov_infer_request_t> request, std::vector<BoundPort> ports,
                             std::shared_ptr<const void> memory)
    : memory_(std::move(memory)), request_(std::move(request)), ports_(std::move(ports)) {}

StatusCode LoadedRequest::SetBlob(const char* name, const Blob::Ptr& blob,
                                  ResponseDesc* response) noexcept {
    const StatusCode status = answer(response, [&] {
        if (find(name == nullptr ? "" : name).set(*request_, blob)) {
            ++bindings_;
        }
    });
    if (status != StatusCode::OK) {
        // This round is over: its blobs must not be used for the next one.
        forgetBlobs();
    }
    return status;
}

StatusCode LoadedRequest::Infer(ResponseDesc* response) noexcept {
    const StatusCode status = answer(response, [&] {
        requireBlobs();
        check([&] { return ov_infer_request_infer(request_.get()); });
    });
    forgetBlobs();
    return status;
}

void LoadedRequest::forgetBlobs() noexcept {
    for (BoundPort& port : ports_) {
        port.forgetBlob();
    }
}

/** If an input and an output share a name, the first blob of a round goes to the input. */
BoundPort& LoadedRequest::find(std::string_view name) {
    const auto found = std::lower_bound(
        ports_.begin(), ports_.end(), name,
        [](const BoundPort& port, std::string_view wanted) { return port.name() < wanted; });
    if (found == ports_.end() || found->name() != name) {
        throw Failure(NOT_FOUND,
                      "The network has no input or output \"" + std::string(name) + "\"");
    }
    const auto next = std::next(found);
    const bool shared = next != ports_.end() && next->name() == name;
    return shared && found->hasBlob() && !next->hasBlob() ? *next : *found;
}

/** Otherwise the runtime would use the memory of an earlier round's blobs, which may be gone. */
void LoadedRequest::requireBlobs() const {
    for (const BoundPort& port : ports_) {
        if (!port.hasBlob()) {
            throw Failure(NOT_ALLOCATED, port.describe() + " has no blob for this run");
        }
    }
}

}  // namespace InferenceEngine::runtime
