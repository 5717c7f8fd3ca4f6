#include "engine/openvino/network_reading.h"

#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/diagnostics.h"
#include "core/secure_wipe.h"
#include "engine/openvino/mapped_allocator.h"
#include "engine/openvino/runtime_libraries.h"
#include "engine/openvino/secret_allocator.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {
namespace {

using InferenceEngine::Precision;
using InferenceEngine::ResponseDesc;
using InferenceEngine::StatusCode;

void requireOk(StatusCode status, ResponseDesc& response) {
    if (status != InferenceEngine::OK) {
        InferenceEngine::details::extract_exception(status, response.msg);
    }
}

void readTopology(InferenceEngine::ICNNNetReader& reader, std::string_view text) {
    ResponseDesc response;
    requireOk(reader.ReadNetwork(text.data(), text.size(), &response), response);
}

void readTopology(InferenceEngine::ICNNNetReader& reader, const NetworkComponents& network) {
    ComponentReader component(network.source, network.topology);
    const std::unique_ptr<char[]> buffer(new char[component.size()]);
    std::optional<WipeOnExit> wipe;
    if (network.topology.isSecured()) {
        wipe.emplace(buffer.get(), component.size());
    }
    const uint64 size = component.read(buffer.get());
    readTopology(reader, std::string_view(buffer.get(), size));
}

using WeightsBlob = InferenceEngine::TBlob<std::uint8_t>;

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

// The blob has the stored size: decrypted weights are shorter, and are followed by zeros.
WeightsBlob::Ptr readWeightsBlob(const NetworkComponents& network, bool mapWeights) {
    if (network.weights.resolvedPath.empty()) {
        return makeWeightsBlob(0, nullptr);
    }
    ComponentReader component(network.source, network.weights);
    if (mapWeights && component.size() != 0) {  // an empty blob needs memory too
        if (std::optional<MappedBytes> mapped = component.map()) {
            return makeWeightsBlob(component.size(), makeMappedAllocator(std::move(*mapped)));
        }
    }
    auto blob = makeWeightsBlob(component.size(),
                                network.weights.isSecured() ? makeSecretAllocator() : nullptr);
    const auto memory = blob->buffer();
    component.read(memory.as<char*>());
    return blob;
}

}  // namespace

void readComponents(InferenceEngine::ICNNNetReader& reader, const NetworkComponents& network,
                    bool mapWeights) {
    readTopology(reader, network);
    const auto blob = readWeightsBlob(network, mapWeights);
    ResponseDesc response;
    const StatusCode status = reader.SetWeights(blob, &response);
    if (status != InferenceEngine::OK) {
        diagnoseMissingLibraries("reading a network", network.topology.resolvedPath);
    }
    requireOk(status, response);
}

void readWithoutWeights(InferenceEngine::ICNNNetReader& reader, std::string_view topology) {
    readTopology(reader, topology);
    ResponseDesc response;
    requireOk(reader.SetWeights(makeWeightsBlob(0, nullptr), &response), response);
}

void readNetwork(std::shared_ptr<InferenceEngine::ICNNNetReader>& reader,
                 const NetworkComponents& network, bool mapWeights) {
    try {
        if (reader == nullptr) {
            reader = InferenceEngine::details::shared_from_irelease(
                InferenceEngine::CreateCNNNetReader());
        }
        if (reader == nullptr) {
            throw MLFrameworkException("The engine provides no network reader");
        }
        readComponents(*reader, network, mapWeights);
    } catch (const std::exception& exception) {
        throw FileException(exception.what());
    } catch (...) {
        diagnose([&network] {
            return "reading the network " + inQuotes(network.topology.resolvedPath) +
                   ": the engine threw an exception without a message";
        });
        throw Exception("Unknown/internal exception happened.");
    }
}

}  // namespace VelmoraQuavin::internal
