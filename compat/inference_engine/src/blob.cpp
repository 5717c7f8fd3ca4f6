#include "ie/blob.hpp"

#include <optional>

#include "element_count.hpp"
#include "ie/exception.hpp"
#include "ie/typed_blob.hpp"

namespace InferenceEngine {
namespace {

std::size_t elementsOf(const SizeVector& dims) {
    const std::optional<std::size_t> elements = countElements(dims);
    if (!elements) {
        throw details::InferenceEngineException("The dimensions of the blob are too large");
    }
    return *elements;
}

}  // namespace

Blob::Blob(const TensorDesc& desc) : desc_(desc), size_(elementsOf(desc.getDims())) {}

namespace details {

void throwNullBlobMemory() {
    throw InferenceEngineException("Using Blob on external nullptr memory");
}

void throwNullBlobAllocator() {
    throw InferenceEngineException("TBlob allocator was not initialized.");
}

void throwWrongStorageType(const Precision& precision) {
    throw InferenceEngineException(
        std::string("Cannot make shared blob! The element type does not store precision ") +
        precision.name());
}

}  // namespace details
}  // namespace InferenceEngine
