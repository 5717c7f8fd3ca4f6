// The element types of the runtime and the precisions of the interface.
#pragma once

#include <openvino/c/openvino.h>

#include <string>

#include "ie/precision.hpp"

namespace InferenceEngine::runtime {

enum class Direction { Input, Output };

/** "Input" or "Output", to begin a message with. */
const char* nameOf(Direction direction) noexcept;

/**
 * The precision that a port of this element type is shown with, and loaded with unless another is
 * set; UNSPECIFIED for a type that can't be shown.
 */
Precision shownPrecision(ov_element_type_e type, Direction direction) noexcept;

/** The element type of a precision that a network can be loaded with; DYNAMIC for the others. */
ov_element_type_e elementTypeOf(Precision precision) noexcept;

/** Whether every value of one precision is a value of the other, so that a detour changes nothing.
 */
bool holdsAllOf(Precision wide, Precision narrow) noexcept;

}  // namespace InferenceEngine::runtime
