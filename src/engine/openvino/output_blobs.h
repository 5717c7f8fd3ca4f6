#pragma once

#include <inference_engine.hpp>
#include <memory>
#include <string>
#include <vector>

#include "engine/openvino/output_pool.h"
#include "quavin/feature.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {

/// An output of a loaded network, and the memory that its blobs come from.
struct OutputPort {
    std::string name;
    InferenceEngine::DataPtr data;
    InferenceEngine::TensorDesc description;  // of its blobs
    std::shared_ptr<OutputPool> pool;
};
using OutputPorts = std::vector<OutputPort>;
/// The blobs of one prediction, in the order of the ports.
using OutputBlobs = std::vector<InferenceEngine::Blob::Ptr>;

/// The outputs of a network, in the order of their names, each with a pool of its own.
OutputPorts makeOutputPorts(const InferenceEngine::OutputsDataMap& outputs);

/// Frees the memory that no blob uses; what blobs give back later is freed at once.
void closePools(const OutputPorts& ports) noexcept;

/// Creates a blob with memory for every output, in the output's own precision.
/// @throws std::logic_error if an output has no data.
/// @throws InvalidTypeException if an output has a precision for which the library has no tensors.
OutputBlobs makeOutputBlobs(const OutputPorts& ports);

/// Whether the network has all declared outputs. One without any outputs passes: it is reported
/// after inference, with its own message.
/// @return MODEL_METADATA_ERROR if not.
QuavinStatus checkOutputNames(const std::vector<ModelFeatureDescriptor>& declared,
                              const OutputPorts& ports);

/// Appends a feature for every declared output, over the blob of the port of the same name, which
/// must exist.
void appendOutputFeatures(const std::vector<ModelFeatureDescriptor>& declared,
                          const OutputPorts& ports, const OutputBlobs& blobs,
                          std::vector<std::shared_ptr<QuavinFeature>>& features);

}  // namespace VelmoraQuavin::internal
