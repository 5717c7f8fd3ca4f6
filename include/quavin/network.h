#pragma once

/// @file
/// Inspecting a network without loading it as a model.

#include <vector>

#include "quavin/export.h"
#include "quavin/feature.h"
#include "quavin/files.h"
#include "quavin/metadata.h"
#include "quavin/package_memory.h"
#include "quavin/status.h"

namespace VelmoraQuavin {

/// Reads a network's files and lists its inputs and outputs as getModel would see them: sorted by
/// name, with element type and shape, each as a required tensor feature. Nothing is compiled.
///
/// Inputs of unsigned 8- and 16-bit integers and of booleans, which predictions do not accept, are
/// listed as such; any other unsupported element type is listed as DataType::UNDEFINED. Does not
/// require QuavinClient::init; may run on several threads at once.
///
/// @param topology the network's description, a plain file.
/// @param weights its constants, a plain file; the empty path for a network without constants.
/// @param inputs receives the inputs, replacing what it held; unchanged on failure.
/// @param outputs receives the outputs in the same way.
/// @return SUCCESS; FILE_ERROR if a file cannot be read, or is not a network that can be loaded
///         (for example one with dynamic shapes); FAILURE if the engine fails without an
///         explanation, or if memory runs out. Never throws.
QUAVIN_API QuavinStatus describeNetwork(const Filepath& topology, const Filepath& weights,
                                        std::vector<ModelFeatureDescriptor>& inputs,
                                        std::vector<ModelFeatureDescriptor>& outputs);
/// As above, for the network of a package; its secured files are decrypted in memory. Where keys
/// are trusted (QuavinConfig::SetTrustedKeys), the package must be signed by one of them; plain
/// files, as above, need no signature.
/// @param metadata a manifest that has been read, with the keys set on its components.
/// @param inputs as above.
/// @param outputs as above.
/// @return as above; MODEL_METADATA_ERROR if there is no target for this engine; INVALID_MODEL_PATH
///         for fewer than two file components; where keys are trusted, SIGNATURE_ERROR for a
///         package that none of them signed, FILE_ERROR for a signature that cannot be read, and
///         INVALID_ARGUMENTS for a key that cannot be used.
QUAVIN_API QuavinStatus describeNetwork(const ModelMetadata& metadata,
                                        std::vector<ModelFeatureDescriptor>& inputs,
                                        std::vector<ModelFeatureDescriptor>& outputs);
/// As above, for a package in a tar archive in memory; see the overload of QuavinClient::getModel
/// that takes one.
/// @param archive the archive; secured as a whole if `keys` has an archive key. Not needed
///        after the call.
/// @param size bytes at `archive`.
/// @param keys the keys of the package's secured parts.
/// @param inputs as above.
/// @param outputs as above.
/// @return as above; MODEL_METADATA_ERROR also for a manifest that is missing or malformed;
///         INVALID_ARGUMENTS, TAR_CHECKSUM_MISMATCH, TAR_UNSUPPORTED_ENTRY and FILE_ERROR for an
///         archive that getModel() would refuse.
QUAVIN_API QuavinStatus describeNetwork(const void* archive, uint64 size, const PackageKeys& keys,
                                        std::vector<ModelFeatureDescriptor>& inputs,
                                        std::vector<ModelFeatureDescriptor>& outputs);
/// As above, for a package whose files are in memory; see QuavinClient::getModelFromBuffers.
/// @param buffers the manifest and the components. Not needed after the call, and their owners are
///        not kept.
/// @param keys the keys of the secured components.
/// @param inputs as above.
/// @param outputs as above.
/// @return as above; INVALID_ARGUMENTS for buffers that getModelFromBuffers() would refuse.
QUAVIN_API QuavinStatus describeNetworkFromBuffers(const std::vector<PackageBuffer>& buffers,
                                                   const PackageKeys& keys,
                                                   std::vector<ModelFeatureDescriptor>& inputs,
                                                   std::vector<ModelFeatureDescriptor>& outputs);

}  // namespace VelmoraQuavin
