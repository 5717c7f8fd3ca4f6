// Blobs: memory with a description.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "ie/common.hpp"
#include "ie/locked_memory.hpp"
#include "ie/tensor_desc.hpp"

namespace InferenceEngine {

/** Memory with a description; the derived class determines who owns the memory. Not thread-safe. */
class Blob {
public:
    using Ptr = std::shared_ptr<Blob>;
    using CPtr = std::shared_ptr<const Blob>;

    Blob(const Blob&) = delete;
    Blob& operator=(const Blob&) = delete;
    virtual ~Blob() = default;

    const TensorDesc& getTensorDesc() const noexcept { return desc_; }

    /** The number of elements: the product of the dimensions, so 1 if there are none. */
    std::size_t size() const noexcept { return size_; }
    std::size_t byteSize() const noexcept { return size_ * element_size(); }
    virtual std::size_t element_size() const noexcept = 0;

    /** Allocates memory for the described elements and frees any earlier memory; on failure the
     * blob has none. */
    virtual void allocate() noexcept = 0;
    /** Frees the memory; false if there was none. */
    virtual bool deallocate() noexcept = 0;

    virtual LockedMemory<void> buffer() noexcept = 0;
    virtual LockedMemory<const void> cbuffer() const noexcept = 0;

protected:
    /** @throws details::InferenceEngineException if there are more elements than memory can hold */
    explicit Blob(const TensorDesc& desc);

private:
    TensorDesc desc_;
    std::size_t size_;
};

using BlobMap = std::map<std::string, Blob::Ptr>;

/** A blob whose memory the program itself can read and write; the only kind supported here. */
class MemoryBlob : public Blob {
public:
    using Ptr = std::shared_ptr<MemoryBlob>;
    using CPtr = std::shared_ptr<const MemoryBlob>;

protected:
    using Blob::Blob;
};

}  // namespace InferenceEngine
