#pragma once

/// @file
/// Looking at a network before there is a package or a model of it.

#include <vector>

#include "quavin/export.h"
#include "quavin/feature.h"
#include "quavin/files.h"
#include "quavin/metadata.h"
#include "quavin/status.h"

namespace VelmoraQuavin {

/// Reads a network's files and tells what goes in and comes out, as loading will show it: names in
/// name order, element types and shapes, each as a required tensor feature. Nothing is compiled.
///
/// Inputs of unsigned 8- and 16-bit integers and of booleans, which no prediction takes, are shown
/// as such; any other element type that no tensor has is DataType::UNDEFINED. Needs no
/// QuavinClient::init; may run on several threads at once.
///
/// @param topology the network's text, a plain file.
/// @param weights its constants, a plain file; the empty path for a network without constants.
/// @param inputs receives the inputs, in place of what it held; unchanged after a failure.
/// @param outputs receives the outputs in the same way.
/// @return SUCCESS; FILE_ERROR where a file cannot be read, or is no network that can be loaded,
///         one with dynamic shapes for example; FAILURE for what the engine does not explain, and
///         where memory runs out. Throws nothing.
QUAVIN_API QuavinStatus describeNetwork(const Filepath& topology, const Filepath& weights,
                                        std::vector<ModelFeatureDescriptor>& inputs,
                                        std::vector<ModelFeatureDescriptor>& outputs);
/// The same for the network of a package, whose secured files are decrypted in memory.
/// @param metadata a manifest that was read, with the keys set on its components.
/// @param inputs as above.
/// @param outputs as above.
/// @return as above; MODEL_METADATA_ERROR where there is no target for this engine;
///         INVALID_MODEL_PATH for fewer than two file components.
QUAVIN_API QuavinStatus describeNetwork(const ModelMetadata& metadata,
                                        std::vector<ModelFeatureDescriptor>& inputs,
                                        std::vector<ModelFeatureDescriptor>& outputs);

}  // namespace VelmoraQuavin
