#pragma once

#include <memory>
#include <string>
#include <vector>

#include "package/manifest/manifest_path.h"
#include "quavin/client.h"

namespace quavin_tool {

using Metadata = std::shared_ptr<VelmoraQuavin::ModelMetadata>;
using Features = std::vector<std::shared_ptr<VelmoraQuavin::QuavinFeature>>;
using Descriptors = std::vector<VelmoraQuavin::ModelFeatureDescriptor>;

using VelmoraQuavin::internal::kManifestName;
using VelmoraQuavin::internal::manifestPath;

/// Why a path cannot be a package's directory; empty if it can.
std::string packageProblem(const std::string& package);

/// Reads the manifest in a package's directory.
/// @throws InvalidArgumentsException if there is no such directory.
Metadata readManifest(const std::string& package);

/// The part of a manifest that this engine uses.
/// @throws ModelMetaDataException if there is none.
VelmoraQuavin::ModelTarget& engineTarget(VelmoraQuavin::ModelMetadata& metadata);

/// Whether any component is secured.
bool isSecured(const VelmoraQuavin::ModelTarget& target);

/// Advice if secured files lack a key, or if decrypting them does not yield a network.
constexpr const char* kMissingKeyAdvice = "Pass the key with --key-file or --key-env.";
constexpr const char* kWrongKeyAdvice =
    "The key is wrong, or a file is damaged: the decrypted data is not a network.";
constexpr const char* kWrongArchiveKeyAdvice =
    "Pass the key that it was encrypted with, or get the file again.";

/// Inputs of zeros.
Features zeroInputs(VelmoraQuavin::QuavinModel& model);

/// Predicts; throws every failure as an exception of the library.
Features predict(VelmoraQuavin::QuavinModel& model, const Features& inputs);

}  // namespace quavin_tool
