#pragma once

namespace VelmoraQuavin::testing {

inline constexpr const char* kOutOfRange =
    "Index was out-of-range when accessing TensorShape's dimensions";
inline constexpr const char* kMismatch =
    "Cannot resize a tensor because the new shape has different memory requirements than the old "
    "shape.";
inline constexpr const char* kAllocation = "Failed allocating a new buffer when resizing a tensor";

}  // namespace VelmoraQuavin::testing
