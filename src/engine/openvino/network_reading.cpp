#include "engine/openvino/network_reading.h"

#include <new>
#include <string>
#include <utility>

#include "core/diagnostics.h"
#include "engine/openvino/mapped_allocator.h"
#include "engine/openvino/runtime_libraries.h"
#include "engine/openvino/secret_allocator.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {
namespace {

using InferenceEngine::Precision;
using InferenceEngine::ResponseDesc;
using InferenceEngine::StatusCode;
using WeightsBlob = InferenceEngine::TBlob<std::uint8_t>;

void requireOk(StatusCode status, ResponseDesc& response) {
    if (status != InferenceEngine::OK) {
        InferenceEngine::details::extract_exception(status, response.msg);
    }
}

void readText(InferenceEngine::ICNNNetReader& reader, std::string_view text) {
    ResponseDesc response;
    requireOk(reader.ReadNetwork(text.data(), text.size(), &response), response);
}

// A null allocator stands for the engine's own.
WeightsBlob::Ptr makeWeightsBlob(uint64 size,
                                 const std::shared_ptr<InferenceEngine::IAllocator>& allocator) {
    const InferenceEngine::TensorDesc description(Precision::U8, {size}, InferenceEngine::ANY);
    auto blob = allocator == nullptr
                    ? InferenceEngine::make_shared_blob<std::uint8_t>(description)
                    : InferenceEngine::make_shared_blob<std::uint8_t>(description, allocator);
    blob->allocate();
    if (size != 0 && blob->buffer().as<void*>() == nullptr) {
        throw std::bad_alloc();
    }
    return blob;
}

template <typename Reading>
bool succeeds(const Reading& reading, std::exception_ptr& problem) noexcept {
    try {
        reading();
        return true;
    } catch (...) {
        problem = std::current_exception();
        return false;
    }
}

}  // namespace

bool StoredNetwork::read() noexcept {
    return succeeds([this] { readTopology(); }, topologyProblem_) &&
           succeeds([this] { readWeights(); }, weightsProblem_);
}

std::string_view StoredNetwork::topology() const {
    return {topologyBytes_.get(), topology_->size()};
}

std::string_view StoredNetwork::weights() const {
    const WeightsBlob& blob = *weightsBlob_;
    const auto memory = blob.cbuffer();
    return {memory.as<const char*>(), blob.byteSize()};
}

void StoredNetwork::passTo(InferenceEngine::ICNNNetReader& reader) {
    passTopology(reader);
    passWeights(reader);
}

void StoredNetwork::readTopology() {
    topology_.emplace(network_.source, network_.topology);
    topologyBytes_.reset(new char[topology_->size()]);
    if (network_.isSecret(network_.topology)) {
        topologyWipe_.emplace(topologyBytes_.get(), topology_->size());
    }
    topology_->readStored(topologyBytes_.get());
}

// The blob has the stored size: decrypted weights are shorter, and are followed by zeros.
void StoredNetwork::readWeights() {
    if (network_.weights.resolvedPath.empty()) {
        weightsBlob_ = makeWeightsBlob(0, nullptr);
        return;
    }
    weights_.emplace(network_.source, network_.weights);
    const bool map = mapWeights_ || weights_->isInMemory();
    if (map && weights_->size() != 0) {  // an empty blob needs memory too
        if (std::optional<MappedBytes> mapped = weights_->map()) {
            weightsBlob_ =
                makeWeightsBlob(weights_->size(), makeMappedAllocator(std::move(*mapped)));
            return;
        }
    }
    auto blob = makeWeightsBlob(
        weights_->size(), network_.isSecret(network_.weights) ? makeSecretAllocator() : nullptr);
    const auto memory = blob->buffer();
    weights_->readStored(memory.as<char*>());
    weightsBlob_ = std::move(blob);
}

void StoredNetwork::passTopology(InferenceEngine::ICNNNetReader& reader) {
    if (topologyProblem_ != nullptr) {
        std::rethrow_exception(topologyProblem_);
    }
    if (topologyBytes_ == nullptr) {
        readTopology();
    }
    const uint64 size = topology_->decrypt(topologyBytes_.get());
    readText(reader, std::string_view(topologyBytes_.get(), size));
    // Before memory for the weights is needed.
    topologyWipe_.reset();
    topologyBytes_.reset();
}

void StoredNetwork::passWeights(InferenceEngine::ICNNNetReader& reader) {
    if (weightsProblem_ != nullptr) {
        std::rethrow_exception(weightsProblem_);
    }
    if (weightsBlob_ == nullptr) {
        readWeights();
    }
    const WeightsBlob::Ptr blob = std::move(weightsBlob_);
    if (weights_) {
        const auto memory = blob->buffer();
        weights_->decrypt(memory.as<char*>());
    }
    ResponseDesc response;
    const StatusCode status = reader.SetWeights(blob, &response);
    if (status != InferenceEngine::OK) {
        diagnoseMissingLibraries("reading a network", network_.topology.resolvedPath);
    }
    requireOk(status, response);
}

void readWithoutWeights(InferenceEngine::ICNNNetReader& reader, std::string_view topology) {
    readText(reader, topology);
    ResponseDesc response;
    requireOk(reader.SetWeights(makeWeightsBlob(0, nullptr), &response), response);
}

void readNetwork(std::shared_ptr<InferenceEngine::ICNNNetReader>& reader, StoredNetwork& network) {
    try {
        if (reader == nullptr) {
            reader = InferenceEngine::details::shared_from_irelease(
                InferenceEngine::CreateCNNNetReader());
        }
        if (reader == nullptr) {
            throw MLFrameworkException("The engine provides no network reader");
        }
        network.passTo(*reader);
    } catch (const SignatureException&) {
        throw;
    } catch (const std::exception& exception) {
        throw FileException(exception.what());
    } catch (...) {
        diagnose([&network] {
            return "reading the network " + inQuotes(network.components().topology.resolvedPath) +
                   ": the engine threw an exception without a message";
        });
        throw Exception("Unknown/internal exception happened.");
    }
}

}  // namespace VelmoraQuavin::internal
