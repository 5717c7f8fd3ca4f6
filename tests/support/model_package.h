#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/ir_network.h"
#include "support/secured_file.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::testing {

/// The content of a manifest; by default for a plain package of "net.xml" and "net.bin".
struct PackageText {
    std::string name = "a model";
    std::string engine = "Openvino";
    /// Pairs of name and path.
    std::vector<std::pair<std::string, std::string>> components = {{"file", "net.xml"},
                                                                   {"file", "net.bin"}};
    /// JSON objects.
    std::vector<std::string> inputs;
    std::vector<std::string> outputs;

    std::string manifest() const;
};

/// The JSON object of a tensor feature; a dimension of -1 makes its shape variable.
std::string tensorFeature(const std::string& name, const IrNetwork::Shape& shape,
                          const std::string& dataType);
/// The JSON object of a feature that is not a tensor ("int64", "string", ...).
std::string scalarFeature(const std::string& name, const std::string& featureType);

/// The text of a plain package with a network's inputs and outputs, in the network's order.
PackageText describe(const IrNetwork& network);

/// Writes "net.xml" and "net.bin" into a folder of `directory` ("" for the directory itself).
void writeNetwork(const TempDirectory& directory, const IrNetwork& network,
                  const std::string& folder = "");
/// Writes "manifest.json".
void writeManifest(const TempDirectory& directory, const PackageText& text,
                   const std::string& folder = "");
/// Writes a plain package.
void writePackage(const TempDirectory& directory, const IrNetwork& network,
                  const std::string& folder = "");
/// Writes a package whose two files are secured with the key.
void writeSecuredPackage(const TempDirectory& directory, const IrNetwork& network,
                         const CryptoKey& key, const std::string& folder = "");

}  // namespace VelmoraQuavin::testing
