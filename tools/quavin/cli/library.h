#pragma once

#include <vector>

#include "quavin/client.h"

namespace quavin_tool {

/// How the command line turns the library on. Without trusted keys, it verifies no signatures.
VelmoraQuavin::QuavinConfig libraryConfig(
    const std::vector<VelmoraQuavin::String>& trustedKeys = {});

/// Turns the library on again, so that from now on it loads nothing but what one of these keys
/// signed. A child process that tries a network trusts them too.
/// @param pems public keys that can be used, in PEM.
void trustKeys(const std::vector<VelmoraQuavin::String>& pems);

/// The keys that were given to trustKeys() last.
const std::vector<VelmoraQuavin::String>& trustedKeys();

}  // namespace quavin_tool
