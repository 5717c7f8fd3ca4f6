#pragma once

#include <optional>
#include <string_view>

#include "platform/ecdsa.h"

namespace VelmoraQuavin::internal {

/// Reads an ECDSA-Sig-Value, which must be the one DER form of two integers from 1 to the order of
/// the curve less 1. Both of the values of s that verify are accepted.
/// @return nothing for anything else, whatever the system's cryptography would accept.
std::optional<platform::EcdsaSignature> readEcdsaSignature(std::string_view der,
                                                           platform::EcCurve curve);

}  // namespace VelmoraQuavin::internal
