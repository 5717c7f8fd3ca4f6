#pragma once

#include <quavin/quavin.h>

#include <memory>
#include <string>
#include <vector>

namespace benchmark {

/// Loads the package in a folder, without registering it.
/// @param keyHex the key of all its secured components in hexadecimal; empty for a plain package.
/// @throws VelmoraQuavin::Exception with the library's status if that fails.
std::shared_ptr<VelmoraQuavin::QuavinModel> loadPackage(
    const std::string& folder, const std::string& keyHex,
    const VelmoraQuavin::EngineOptions& options = {});

/// A file's content.
/// @throws std::runtime_error if it cannot be read.
std::vector<char> readFile(const std::string& path);

/// Loads the package in an archive in memory.
/// @param keyHex the key of the archive as a whole; empty for a plain one.
/// @throws VelmoraQuavin::Exception with the library's status if that fails.
std::shared_ptr<VelmoraQuavin::QuavinModel> loadArchive(const std::vector<char>& archive,
                                                        const std::string& keyHex);

/// The files of the plain package in a folder, as buffers with owners.
/// @throws std::exception if one cannot be read.
std::vector<VelmoraQuavin::PackageBuffer> readBuffers(const std::string& folder);
/// Loads the package in plain buffers.
/// @throws VelmoraQuavin::Exception with the library's status if that fails.
std::shared_ptr<VelmoraQuavin::QuavinModel> loadBuffers(
    const std::vector<VelmoraQuavin::PackageBuffer>& buffers);

/// @throws VelmoraQuavin::Exception with the status unless it is a success.
void require(const VelmoraQuavin::QuavinStatus& status);

}  // namespace benchmark
