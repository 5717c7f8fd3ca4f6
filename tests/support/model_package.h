#pragma once

#include <map>
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

/// The files of a package by their names.
using PackageFiles = std::map<std::string, std::string>;

/// A plain package.
PackageFiles packageOf(const IrNetwork& network);
/// A package whose two files are secured with the key.
PackageFiles securedPackageOf(const IrNetwork& network, const CryptoKey& key);
/// A tar archive of files, in a folder of it ("" for none).
std::string archiveOf(const PackageFiles& files, const std::string& folder = "");

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
