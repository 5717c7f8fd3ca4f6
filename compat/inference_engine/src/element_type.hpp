// The element types of the runtime and the precisions of the interface.
#pragma once

#include <openvino/c/openvino.h>

#include <string>

#include "ie/precision.hpp"

namespace InferenceEngine::runtime {

enum class Direction { Input, Output };

/** "Input" or "Output", for the start of a message. */
const char* nameOf(Direction direction) noexcept;

/**
 * The precision shown for a port of this element type, which is also used for loading unless
 * another is set; UNSPECIFIED if the type can't be shown.
 */
Precision shownPrecision(ov_element_type_e type, Direction direction) noexcept;

/** The element type for a precision that networks can be loaded with; DYNAMIC for all others. */
ov_element_type_e elementTypeOf(Precision precision) noexcept;

/** Whether `wide` can represent every value of `narrow`, so that a detour through it is lossless.
 */
bool holdsAllOf(Precision wide, Precision narrow) noexcept;

}  // namespace InferenceEngine::runtime
