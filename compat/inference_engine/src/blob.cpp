#include "ie/blob.hpp"

#include <cstdint>

#include "ie/exception.hpp"
#include "ie/typed_blob.hpp"

namespace InferenceEngine {
namespace {

// For the widest element type, so that the size of a blob in bytes never overflows.
constexpr std::size_t kMostElements = PTRDIFF_MAX / sizeof(std::int64_t);

std::size_t elementsOf(const SizeVector& dims) {
    std::size_t elements = 1;
    for (const std::size_t dim : dims) {
        if (dim != 0 && elements > kMostElements / dim) {
            throw details::InferenceEngineException("The dimensions of the blob are too large");
        }
        elements *= dim;
    }
    return elements;
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
