#include "ie/tensor_desc.hpp"

#include <optional>
#include <string>

#include "ie/exception.hpp"

namespace InferenceEngine {
namespace {

/** The number of dimensions of a layout; nothing for layouts that fit any number. */
std::optional<std::size_t> rankOf(Layout layout) {
    switch (layout) {
        case SCALAR:
            return 0;
        case C:
            return 1;
        case HW:
        case NC:
        case CN:
            return 2;
        case CHW:
            return 3;
        case NCHW:
        case NHWC:
        case OIHW:
            return 4;
        case NCDHW:
        case NDHWC:
            return 5;
        case ANY:
        case BLOCKED:
            break;
    }
    return std::nullopt;
}

}  // namespace

TensorDesc::TensorDesc(const Precision& precision, const SizeVector& dims, Layout layout)
    : dims_(dims), precision_(precision), layout_(layout) {
    const auto rank = rankOf(layout);
    if (rank && *rank != dims.size()) {
        throw details::InferenceEngineException("Dims and format are inconsistent: a layout of " +
                                                std::to_string(*rank) + " dimensions, given " +
                                                std::to_string(dims.size()));
    }
}

Layout TensorDesc::getLayoutByDims(const SizeVector& dims) noexcept {
    switch (dims.size()) {
        case 0:
            return SCALAR;
        case 1:
            return C;
        case 2:
            return NC;
        case 3:
            return CHW;
        case 4:
            return NCHW;
        case 5:
            return NCDHW;
        default:
            return BLOCKED;
    }
}

}  // namespace InferenceEngine
