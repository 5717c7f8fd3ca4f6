#pragma once

#include "support/ir_network.h"

namespace VelmoraQuavin::testing {

/// y = 2 x + (0.5, 1, 1.5, 2), of four floats.
IrNetwork affineNetwork();
/// y = x + x, of two floats; has no weights.
IrNetwork sumNetwork();
/// Inputs "left" and "right", outputs "sum", "difference" and "product", each of two floats.
IrNetwork arithmeticNetwork();
/// y = x / 2 as floats, of four elements x of the given type.
IrNetwork halvingNetwork(const std::string& type);
/// y = 3 x of four 32-bit integers.
IrNetwork integerNetwork();
/// y = 10 x of no dimensions, which is one float.
IrNetwork scalarNetwork();

}  // namespace VelmoraQuavin::testing
