// Reading, loading and running networks in tests.
#pragma once

#include <cstdint>
#include <cstring>
#include <inference_engine.hpp>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace InferenceEngine {

/** A blob with its own memory that holds these elements. */
template <class T>
Blob::Ptr blobOf(const Precision& precision, const SizeVector& dims,
                 const std::vector<T>& elements) {
    auto blob = make_shared_blob<T>(TensorDesc(precision, dims, ANY));
    blob->allocate();
    if (!elements.empty()) {
        std::memcpy(blob->buffer().template as<T*>(), elements.data(), elements.size() * sizeof(T));
    }
    return blob;
}

inline Blob::Ptr floats(const SizeVector& dims, const std::vector<float>& elements = {}) {
    return blobOf(Precision::FP32, dims, elements);
}

template <class T>
std::vector<T> elementsOf(const Blob::Ptr& blob) {
    const auto memory = blob->cbuffer();
    const auto* const first = memory.as<const T*>();
    return std::vector<T>(first, first + blob->size());
}

/** A weights blob with the bytes of these elements. */
template <class T>
TBlob<std::uint8_t>::Ptr weightsOf(const std::vector<T>& elements) {
    const std::size_t bytes = elements.size() * sizeof(T);
    auto blob = make_shared_blob<std::uint8_t>(TensorDesc(Precision::U8, {bytes}, ANY));
    blob->allocate();
    if (bytes != 0) {
        std::memcpy(blob->buffer().as<void*>(), elements.data(), bytes);
    }
    return blob;
}

inline TBlob<std::uint8_t>::Ptr noWeights() {
    return weightsOf<std::uint8_t>({});
}

std::shared_ptr<ICNNNetReader> makeReader();

/** The result of reading: OK, or the failure and its text. */
struct ReadingResult {
    StatusCode status;
    std::string text;
};
ReadingResult tryReading(ICNNNetReader& reader, const std::string& network,
                         const TBlob<std::uint8_t>::Ptr& weights = noWeights());

/** Returns a reader that has read the network; throws if it fails. */
std::shared_ptr<ICNNNetReader> readNetwork(const std::string& network,
                                           const TBlob<std::uint8_t>::Ptr& weights = noWeights());

/** A request on the network, loaded on the CPU. */
InferRequest::Ptr load(CNNNetwork network);

/** What a network exports. */
std::string exported(ExecutableNetwork network);

/** A network from what another one exported, on the CPU. */
ExecutableNetwork imported(const std::string& bytes,
                           const std::map<std::string, std::string>& config = {});

/** A property of a loaded network. */
std::string configOf(const ExecutableNetwork& network, const char* name);

std::vector<std::string> inputNames(const CNNNetwork& network);
std::vector<std::string> outputNames(const CNNNetwork& network);

}  // namespace InferenceEngine
