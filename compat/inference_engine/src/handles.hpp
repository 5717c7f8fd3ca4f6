// Owning wrappers for the objects of the runtime's C interface.
#pragma once

#include <openvino/c/openvino.h>

#include <memory>
#include <string>

namespace InferenceEngine::runtime {

struct FreeHandle {
    void operator()(ov_core_t* handle) const noexcept { ov_core_free(handle); }
    void operator()(ov_model_t* handle) const noexcept { ov_model_free(handle); }
    void operator()(ov_compiled_model_t* handle) const noexcept { ov_compiled_model_free(handle); }
    void operator()(ov_infer_request_t* handle) const noexcept { ov_infer_request_free(handle); }
    void operator()(ov_tensor_t* handle) const noexcept { ov_tensor_free(handle); }
    void operator()(ov_output_const_port_t* handle) const noexcept {
        ov_output_const_port_free(handle);
    }
    void operator()(ov_preprocess_prepostprocessor_t* handle) const noexcept {
        ov_preprocess_prepostprocessor_free(handle);
    }
    void operator()(ov_preprocess_input_info_t* handle) const noexcept {
        ov_preprocess_input_info_free(handle);
    }
    void operator()(ov_preprocess_input_tensor_info_t* handle) const noexcept {
        ov_preprocess_input_tensor_info_free(handle);
    }
    void operator()(ov_preprocess_output_info_t* handle) const noexcept {
        ov_preprocess_output_info_free(handle);
    }
    void operator()(ov_preprocess_output_tensor_info_t* handle) const noexcept {
        ov_preprocess_output_tensor_info_free(handle);
    }
    void operator()(const char* text) const noexcept { ov_free(text); }
};

template <class T>
using Handle = std::unique_ptr<T, FreeHandle>;

/** Copies and frees a text of the runtime; empty for null. */
inline std::string takeText(const char* text) {
    const Handle<const char> owner(text);
    return text == nullptr ? std::string() : std::string(text);
}

/** The dimensions of a port, which may be dynamic. */
class PartialShape {
public:
    PartialShape() = default;
    PartialShape(const PartialShape&) = delete;
    PartialShape& operator=(const PartialShape&) = delete;
    ~PartialShape() { ov_partial_shape_free(&shape_); }

    ov_partial_shape_t* out() noexcept { return &shape_; }
    const ov_partial_shape_t& get() const noexcept { return shape_; }

private:
    ov_partial_shape_t shape_{};
};

}  // namespace InferenceEngine::runtime
