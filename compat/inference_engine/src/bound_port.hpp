// A port of a request, and the blob bound to it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "handles.hpp"
#include "ie/blob.hpp"
#include "loaded_port.hpp"

namespace InferenceEngine::runtime {

/** Remembers what memory the runtime has bound to the port, even after the blob is gone. */
class BoundPort {
public:
    explicit BoundPort(const LoadedPort& port);

    std::string_view name() const noexcept { return name_; }
    bool hasBlob() const noexcept { return blob_ != nullptr; }

    /**
     * Takes the blob and binds its memory in the runtime, unless it is bound already.
     *
     * @return whether the runtime was called
     * @throws Failure, leaving the port unchanged, if the blob does not fit
     */
    bool set(ov_infer_request_t& request, const Blob::Ptr& blob);

    /** Releases the blob. The runtime stays bound to its memory, but must not run before the next
     * set. */
    void forgetBlob() noexcept { blob_.reset(); }

    std::string describe() const;

private:
    void* checkedMemory(const Blob::Ptr& blob) const;
    void bind(ov_infer_request_t& request, void* memory);

    std::string name_;
    Direction direction_;
    std::size_t index_;
    Precision precision_;
    ov_element_type_e type_;
    std::vector<std::int64_t> dims_;
    std::size_t elements_ = 1;
    void* boundMemory_ = nullptr;
    Blob::Ptr blob_;
};

}  // namespace InferenceEngine::runtime
