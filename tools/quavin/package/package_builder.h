#pragma once

#include <string>
#include <vector>

#include "tools/quavin/cli/named_values.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/key.h"
#include "tools/quavin/package/manifest_text.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// A network's two files, its inputs and its outputs.
struct NetworkFiles {
    std::vector<std::string> names;    ///< File names in the package.
    std::vector<WipedBytes> contents;  ///< In the same order.
    Descriptors inputs;                ///< In the network's own order, like the outputs.
    Descriptors outputs;
};

/// Reads a network.
/// @param network the path of its XML file.
/// @param weights the path of its weights; empty for the file next to it, or for none.
/// @throws Exception of several classes for a network that could not be loaded or used for
///         predictions later, saying why and what to do.
NetworkFiles readFilesToPack(const std::string& network, const std::string& weights);

/// Describes inputs and outputs.
/// @param descriptions texts by names.
/// @throws InvalidArgumentsException for a name that the network does not have.
void describePorts(const NamedValues& descriptions, NetworkFiles& network);

/// A file of a package.
struct PackageFile {
    std::string name;
    WipedBytes content;
};

/// The files of a package: manifest, network, weights.
/// @param key encrypts the last two; null for a plain package.
std::vector<PackageFile> makePackage(const Identity& identity, const NetworkFiles& network,
                                     const Key* key);

/// Writes a package to a directory, loads it from there and predicts once.
/// @param key the key of a secured package, or null.
void writeAndTry(const std::vector<PackageFile>& package, const std::string& directory,
                 const Key* key);

}  // namespace quavin_tool
