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

/** Memory with a description; whose memory it is, the derived class says. No locking between
 * threads. */
class Blob {
public:
    using Ptr = std::shared_ptr<Blob>;
    using CPtr = std::shared_ptr<const Blob>;

    Blob(const Blob&) = delete;
    Blob& operator=(const Blob&) = delete;
    virtual ~Blob() = default;

    const TensorDesc& getTensorDesc() const noexcept { return desc_; }

    /** Elements: the product of the dimensions, so 1 without any. */
    std::size_t size() const noexcept { return size_; }
    std::size_t byteSize() const noexcept { return size_ * element_size(); }
    virtual std::size_t element_size() const noexcept = 0;

    /** Takes memory for the described elements, giving back any earlier; without it afterwards on
     * failure. */
    virtual void allocate() noexcept = 0;
    /** Gives the memory back; false if there was none. */
    virtual bool deallocate() noexcept = 0;

    virtual LockedMemory<void> buffer() noexcept = 0;
    virtual LockedMemory<const void> cbuffer() const noexcept = 0;

protected:
    /** @throws details::InferenceEngineException if the elements are more than memory can hold */
    explicit Blob(const TensorDesc& desc);

private:
    TensorDesc desc_;
    std::size_t size_;
};

using BlobMap = std::map<std::string, Blob::Ptr>;

/** A blob whose memory the program itself can read and write; the only kind there is here. */
class MemoryBlob : public Blob {
public:
    using Ptr = std::shared_ptr<MemoryBlob>;
    using CPtr = std::shared_ptr<const MemoryBlob>;

protected:
    using Blob::Blob;
};

}  // namespace InferenceEngine
