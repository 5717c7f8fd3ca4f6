// A request of the runtime.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "bound_port.hpp"
#include "handles.hpp"
#include "ie/infer_request.hpp"

namespace InferenceEngine::runtime {

/**
 * Binds blobs by their memory. A blob is held only from SetBlob to the end of the next Infer, so
 * that its memory is freed as soon as the caller drops it; every port needs a blob again in every
 * round. Shares the memory that the compiled model may keep reading.
 */
class LoadedRequest final : public IInferRequest {
public:
    /** @param ports sorted by name, an input before the output of the same name */
    LoadedRequest(Handle<ov_infer_request_t> request, std::vector<BoundPort> ports,
                  std::shared_ptr<const void> memory);
    ~LoadedRequest() override = default;

    void Release() noexcept override { delete this; }
    StatusCode SetBlob(const char* name, const Blob::Ptr& blob,
                       ResponseDesc* response) noexcept override;
    StatusCode Infer(ResponseDesc* response) noexcept override;

    /** The number of times that memory was bound in the runtime. */
    std::size_t bindings() const noexcept { return bindings_; }

private:
    BoundPort& find(std::string_view name);
    void requireBlobs() const;
    void forgetBlobs() noexcept;

    // The request reads from the memory, so it must be destroyed before it.
    std::shared_ptr<const void> memory_;
    Handle<ov_infer_request_t> request_;
    std::vector<BoundPort> ports_;
    std::size_t bindings_ = 0;
};

}  // namespace InferenceEngine::runtime
