#include "ie/network.hpp"

#include <utility>

#include "ie/exception.hpp"
#include "ie/network_reader.hpp"

namespace InferenceEngine {
namespace {

/** The reader's network, kept by keeping the reader. */
std::shared_ptr<ICNNNetwork> networkOf(const std::shared_ptr<ICNNNetReader>& reader) {
    ICNNNetwork* const network = reader ? reader->getNetwork(nullptr) : nullptr;
    return {reader, network};
}

}  // namespace

CNNNetwork::CNNNetwork(std::shared_ptr<ICNNNetwork> network) : network_(std::move(network)) {
    if (!network_) {
        throw details::InferenceEngineException("CNNNetwork was not initialized.");
    }
}

CNNNetwork::CNNNetwork(std::shared_ptr<ICNNNetReader> reader) : CNNNetwork(networkOf(reader)) {}

InputsDataMap CNNNetwork::getInputsInfo() const {
    InputsDataMap inputs;
    network_->getInputsInfo(inputs);
    return inputs;
}

OutputsDataMap CNNNetwork::getOutputsInfo() const {
    OutputsDataMap outputs;
    network_->getOutputsInfo(outputs);
    return outputs;
}

}  // namespace InferenceEngine
