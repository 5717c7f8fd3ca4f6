#pragma once

#include <cstddef>
#include <utility>

#include "quavin/tensor.h"

namespace VelmoraQuavin::internal {

/// A dense tensor over memory of the caller's that can be pointed at other memory. Unlike a
/// BufferWrappedTensor, it may have no dimensions.
class HostTensor : public ITensor {
public:
    HostTensor(DataType dataType, TensorShape shape) : ITensor(dataType, std::move(shape)) {}

    void pointAt(const void* data, std::size_t size) {
        data_ = static_cast<const unsigned char*>(data);
        size_ = size;
    }

    /// What is there, whatever the shape needs: the engine compares it with what it reads.
    int64 bytes() const override { return static_cast<int64>(size_); }
    const unsigned char* buffer() const override { return data_; }
    // The engine only reads its inputs.
    unsigned char* buffer() override { return const_cast<unsigned char*>(data_); }
    /// Always false: the memory is the caller's.
    bool allocate(std::size_t /*byteCount*/) override { return false; }

private:
    const unsigned char* data_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace VelmoraQuavin::internal
