#include "ie/network.hpp"

#include <utility>

#include "ie/exception.hpp"
#include "ie/network_reader.hpp"

namespace InferenceEngine {
namespace {

/** The reader's network; the pointer keeps the reader alive. */
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
    return network_->getInputsInfo();
}

OutputsDataMap CNNNetwork::getOutputsInfo() const {
    return network_->getOutputsInfo();
}

}  // namespace InferenceEngine
