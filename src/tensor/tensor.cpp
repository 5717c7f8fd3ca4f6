#include "quavin/tensor.h"

#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "tensor/element_size.h"

namespace VelmoraQuavin {
namespace {

// A cache line, and the width of the widest vector registers: the engine reads the memory in place.
constexpr std::align_val_t kAlignment{64};
constexpr auto kMostBytes = static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max());

unsigned char* allocateZeroed(std::size_t byteCount) {
    if (byteCount > kMostBytes) {
        throw std::bad_alloc();
    }
    auto* const bytes = static_cast<unsigned char*>(::operator new[](byteCount, kAlignment));
    std::memset(bytes, 0, byteCount);
    return bytes;
}

}  // namespace

void Tensor::AlignedDelete::operator()(unsigned char* bytes) const noexcept {
    ::operator delete[](bytes, kAlignment);
}

Tensor::Tensor(DataType dataType) : ITensor(dataType) {}

Tensor::Tensor(DataType dataType, TensorShape shape)
    : ITensor(dataType, shape),
      buffer_(allocateZeroed(internal::byteCountToAllocate(dataType, shape))) {}

Tensor::~Tensor() = default;

bool Tensor::allocate(std::size_t byteCount) {
    buffer_.reset(allocateZeroed(byteCount));
    return buffer_ != nullptr;
}

}  // namespace VelmoraQuavin
