#pragma once

#include <string>

#include "quavin/status.h"

namespace VelmoraQuavin::internal {

/// @throws SignatureException
[[noreturn]] inline void refuseBundle(const std::string& reason) {
    throw SignatureException("model.sig is not the signature of a model: " + reason);
}

/// For what may be a signature, but not one that can be verified with a key.
/// @throws SignatureException
[[noreturn]] inline void refuseMethod(const std::string& what) {
    throw SignatureException("model.sig uses a method that is not supported: " + what);
}

}  // namespace VelmoraQuavin::internal
