#pragma once

#include <quavin/quavin.h>

#include <memory>
#include <string>

namespace benchmark {

/// Loads the package in a folder, without registering it.
/// @param keyHex the key of all its secured components in hexadecimal; empty for a plain package.
/// @throws VelmoraQuavin::Exception with the library's status if that fails.
std::shared_ptr<VelmoraQuavin::QuavinModel> loadPackage(
    const std::string& folder, const std::string& keyHex,
    const VelmoraQuavin::EngineOptions& options = {});

/// @throws VelmoraQuavin::Exception with the status unless it is a success.
void require(const VelmoraQuavin::QuavinStatus& status);

}  // namespace benchmark
