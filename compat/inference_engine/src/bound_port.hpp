// A port of a request, and the blob on it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "handles.hpp"
#include "ie/blob.hpp"
#include "ports.hpp"

namespace InferenceEngine::runtime {

/** Knows what the runtime has bound to the port, also after the blob is gone. */
class BoundPort {
public:
    BoundPort(const Port& port, Precision precision);

    std::string_view name() const noexcept { return name_; }
    bool hasBlob() const noexcept { return blob_ != nullptr; }

    /**
     * Takes the blob, and tells the runtime about it unless the port is bound to that memory
     * already.
     *
     * @return whether the runtime was told
     * @throws Failure, with the port as it was, for a blob that does not fit
     */
    bool set(ov_infer_request_t& request, const Blob::Ptr& blob);

    /** Lets go of the blob. The runtime stays bound to its memory, but must not run before the next
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
