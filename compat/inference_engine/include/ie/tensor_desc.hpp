// Describes the contents of a blob or network port: element type, dimensions and their meaning.
#pragma once

#include <cstdint>

#include "ie/common.hpp"
#include "ie/precision.hpp"

namespace InferenceEngine {

/** The meaning of the dimensions. ANY and BLOCKED leave it open and fit every rank. */
enum Layout : std::uint8_t {
    ANY = 0,
    NCHW = 1,
    NHWC = 2,
    NCDHW = 3,
    NDHWC = 4,
    OIHW = 64,
    SCALAR = 95,
    C = 96,
    CHW = 128,
    HW = 192,
    NC = 193,
    CN = 194,
    BLOCKED = 200,
};

/** Precision, dimensions and layout, as a value. */
class TensorDesc {
public:
    /** No precision, no dimensions, layout ANY. */
    TensorDesc() = default;

    /** @throws details::InferenceEngineException if the layout does not fit the number of
     * dimensions */
    TensorDesc(const Precision& precision, const SizeVector& dims, Layout layout);

    const SizeVector& getDims() const noexcept { return dims_; }
    const Precision& getPrecision() const noexcept { return precision_; }
    void setPrecision(const Precision& precision) noexcept { precision_ = precision; }
    Layout getLayout() const noexcept { return layout_; }

    /** The default layout for this number of dimensions. */
    static Layout getLayoutByDims(const SizeVector& dims) noexcept;

private:
    SizeVector dims_;
    Precision precision_;
    Layout layout_ = ANY;
};

}  // namespace InferenceEngine
