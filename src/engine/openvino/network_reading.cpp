#include "engine/openvino/network_reading.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "core/diagnostics.h"
#include "core/secure_wipe.h"
#include "engine/openvino/runtime_libraries.h"
#include "engine/openvino/secret_allocator.h"
#include "package/sized_file.h"
#include "quavin/encryption.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {
namespace {

using InferenceEngine::Precision;
using InferenceEngine::ResponseDesc;
using InferenceEngine::StatusCode;

constexpr uint64 kVectorSize = 16;

void requireOk(StatusCode status, ResponseDesc& response) {
    if (status != InferenceEngine::OK) {
        InferenceEngine::details::extract_exception(status, response.msg);
    }
}

SizedFile openComponent(const NetworkComponentEntry& component) {
    SizedFile file = SizedFile::open(Filepath(component.resolvedPath));
    if (component.isSecured() && file.size() > std::numeric_limits<unsigned int>::max()) {
        throw FileException("Secured file of 4 GiB or more : " + component.resolvedPath);
    }
    return file;
}

// Returns the size of the plaintext, which stands at the beginning of the buffer.
uint64 decryptInPlace(const NetworkComponentEntry& component, char* buffer, uint64 size) {
    auto* bytes = reinterpret_cast<unsigned char*>(buffer);
    if (!QuavinEncryption()
             .AES_decrypt(bytes, static_cast<unsigned int>(size), bytes,
                          component.encryption.getKey())
             .ok()) {
        diagnose([&component, size] {
            const bool usable = size >= kVectorSize && size % kVectorSize == 0;
            return "decrypting " + inQuotes(component.resolvedPath) + ": it has " +
                   std::to_string(size) + " bytes" +
                   (usable ? ", and the system's cryptography fails"
                           : ", and a secured file has a multiple of 16, at least 16");
        });
        throw FileException("Could not decrypt file : " + component.resolvedPath);
    }
    std::memset(buffer + size - kVectorSize, 0, kVectorSize);
    return size - kVectorSize;
}

void readTopology(InferenceEngine::ICNNNetReader& reader, const NetworkComponentEntry& component) {
    SizedFile file = openComponent(component);
    uint64 size = file.size();
    const std::unique_ptr<char[]> buffer(new char[size]);
    file.read(buffer.get());

    std::optional<WipeOnExit> wipe;
    if (component.isSecured()) {
        wipe.emplace(buffer.get(), size);
        size = decryptInPlace(component, buffer.get(), size);
    }
    ResponseDesc response;
    requireOk(reader.ReadNetwork(buffer.get(), size, &response), response);
}

InferenceEngine::TBlob<std::uint8_t>::Ptr makeWeightsBlob(uint64 size, bool secured) {
    const InferenceEngine::TensorDesc description(Precision::U8, {size}, InferenceEngine::ANY);
    auto blob = secured ? InferenceEngine::make_shared_blob<std::uint8_t>(description,
                                                                          makeSecretAllocator())
                        : InferenceEngine::make_shared_blob<std::uint8_t>(description);
    blob->allocate();
    if (size != 0 && blob->buffer().as<void*>() == nullptr) {
        throw std::bad_alloc();
    }
    return blob;
}

// The blob has the size of the file; what decryption takes off stays behind the weights as zeros.
InferenceEngine::TBlob<std::uint8_t>::Ptr readWeightsBlob(const NetworkComponentEntry& component) {
    if (component.resolvedPath.empty()) {
        return makeWeightsBlob(0, false);
    }
    SizedFile file = openComponent(component);
    auto blob = makeWeightsBlob(file.size(), component.isSecured());
    {
        const auto memory = blob->buffer();
        char* const buffer = memory.as<char*>();
        file.read(buffer);
        if (component.isSecured()) {
            decryptInPlace(component, buffer, file.size());
        }
    }
    return blob;
}

}  // namespace

void readNetworkFiles(InferenceEngine::ICNNNetReader& reader, const NetworkComponentEntry& topology,
                      const NetworkComponentEntry& weights) {
    readTopology(reader, topology);
    const auto blob = readWeightsBlob(weights);
    ResponseDesc response;
    const StatusCode status = reader.SetWeights(blob, &response);
    if (status != InferenceEngine::OK) {
        diagnoseMissingLibraries("reading a network", topology.resolvedPath);
    }
    requireOk(status, response);
}

void readNetwork(std::shared_ptr<InferenceEngine::ICNNNetReader>& reader,
                 const NetworkComponentEntry& topology, const NetworkComponentEntry& weights) {
    try {
        if (reader == nullptr) {
            reader = InferenceEngine::details::shared_from_irelease(
                InferenceEngine::CreateCNNNetReader());
        }
        if (reader == nullptr) {
            throw MLFrameworkException("The engine has no network reader to give");
        }
        readNetworkFiles(*reader, topology, weights);
    } catch (const std::exception& exception) {
        throw FileException(exception.what());
    } catch (...) {
        diagnose([&topology] {
            return "reading the network " + inQuotes(topology.resolvedPath) +
                   ": the engine fails with an exception without a text";
        });
        throw Exception("Unknown/internal exception happened.");
    }
}

}  // namespace VelmoraQuavin::internal
