#pragma once

#include <memory>
#include <string>
#include <vector>

#include "key.h"
#include "quavin/client.h"

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

/// Reads a package's manifest, and its key where the package needs one.
/// @throws InvalidArgumentsException where it needs one and none is given.
Metadata openPackage(const std::string& package, const KeyOptions& key);

/// Loads the model of a manifest.
std::shared_ptr<VelmoraQuavin::QuavinModel> loadModel(const Metadata& metadata);

/// Inputs of zeros.
Features zeroInputs(VelmoraQuavin::QuavinModel& model);

/// Predicts, with every failure as an exception of the library.
Features predict(VelmoraQuavin::QuavinModel& model, const Features& inputs);

/// Whether an element type can be given to a network.
bool isInputType(VelmoraQuavin::DataType type);

}  // namespace quavin_tool
