#pragma once

#include <memory>
#include <string>
#include <vector>

#include "quavin/client.h"
#include "tools/quavin/package/key.h"

namespace quavin_tool {

using Metadata = std::shared_ptr<VelmoraQuavin::ModelMetadata>;
using Features = std::vector<std::shared_ptr<VelmoraQuavin::QuavinFeature>>;
using Descriptors = std::vector<VelmoraQuavin::ModelFeatureDescriptor>;

/// Why a path cannot be a package's directory; empty where it can.
std::string packageProblem(const std::string& package);

/// Reads the manifest in a package's directory.
/// @throws InvalidArgumentsException where there is no such directory.
Metadata readManifest(const std::string& package);

/// The part of a manifest that this engine uses.
/// @throws ModelMetaDataException where there is none.
VelmoraQuavin::ModelTarget& engineTarget(VelmoraQuavin::ModelMetadata& metadata);

/// Whether any file that loading reads is secured.
bool isSecured(const VelmoraQuavin::ModelTarget& target);

/// Sets a key on all components.
void setKey(VelmoraQuavin::ModelTarget& target, const Key& key);
/// The same for the sixteen bytes of one.
void setKey(VelmoraQuavin::ModelTarget& target, const unsigned char* key);

/// Whether a package's secured files can be read and decrypted, and show no network: the key is
/// wrong then, or a file is damaged. Whatever else keeps it from being loaded is not the key's.
bool decryptsToNoNetwork(const std::string& package, const VelmoraQuavin::ModelTarget& target);

/// What to do where secured files have no key, or one that makes no network of them.
constexpr const char* kMissingKeyAdvice = "Give the key with --key-file or --key-env.";
constexpr const char* kWrongKeyAdvice =
    "The key is wrong, or a file is damaged: what was decrypted is no network.";
constexpr const char* kWrongArchiveKeyAdvice =
    "Give the key that it was encrypted with, or get the file once more.";

/// Reads a package's manifest, and sets its key where there is one.
/// @throws InvalidArgumentsException where the package needs one and there is none.
Metadata openPackage(const std::string& package, const Key* key);

/// Loads the model of a manifest.
/// @throws Exception as loading fails, with advice where a key may be the cause.
std::shared_ptr<VelmoraQuavin::QuavinModel> loadModel(const Metadata& metadata);

/// Inputs of zeros.
Features zeroInputs(VelmoraQuavin::QuavinModel& model);

/// Predicts, with every failure as an exception of the library.
Features predict(VelmoraQuavin::QuavinModel& model, const Features& inputs);

/// Whether an element type can be given to a network.
bool isInputType(VelmoraQuavin::DataType type);

}  // namespace quavin_tool
