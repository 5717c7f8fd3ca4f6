#include <algorithm>
#include <cstddef>
#include <utility>

#include "quavin/tensor.h"

namespace VelmoraQuavin {
namespace {

void requireIndex(uint64 index, uint64 count) {
    if (index >= count) {
        throw RangeException("Index was out-of-range when accessing TensorShape's dimensions");
    }
}

}  // namespace

TensorShape::TensorShape() = default;

TensorShape::TensorShape(int64 d0) : dimensions_{d0} {}

TensorShape::TensorShape(int64 d0, int64 d1) : dimensions_{d0, d1} {}

TensorShape::TensorShape(int64 d0, int64 d1, int64 d2) : dimensions_{d0, d1, d2} {}

TensorShape::TensorShape(int64 d0, int64 d1, int64 d2, int64 d3) : dimensions_{d0, d1, d2, d3} {}

TensorShape::TensorShape(int64 d0, int64 d1, int64 d2, int64 d3, int64 d4)
    : dimensions_{d0, d1, d2, d3, d4} {}

TensorShape::TensorShape(std::initializer_list<int64> dimensions) : dimensions_(dimensions) {}

TensorShape::TensorShape(const std::vector<int64>& dimensions) : dimensions_(dimensions) {}

TensorShape::TensorShape(std::vector<int64>&& dimensions) noexcept
    : dimensions_(std::move(dimensions)) {}

int64 TensorShape::size() const {
    // Unsigned, since a product that overflows wraps.
    uint64 product = 1;
    for (const int64 extent : dimensions_) {
        product *= static_cast<uint64>(extent);
    }
    return static_cast<int64>(product);
}

int64& TensorShape::operator[](uint64 index) {
    requireIndex(index, dimension());
    return dimensions_[index];
}

const int64& TensorShape::operator[](uint64 index) const {
    requireIndex(index, dimension());
    return dimensions_[index];
}

std::vector<int64> TensorShape::rightAligned(std::size_t places) const {
    std::vector<int64> aligned(places, 1);
    const std::size_t count = std::min(places, dimensions_.size());
    std::copy_n(dimensions_.rbegin(), count, aligned.rbegin());
    return aligned;
}

std::vector<int64> TensorShape::getCHW() const {
    return rightAligned(3);
}

std::vector<int64> TensorShape::getNCHW() const {
    return rightAligned(4);
}

std::vector<int64> TensorShape::getNHWC() const {
    const std::vector<int64> nchw = getNCHW();
    return {nchw[0], nchw[2], nchw[3], nchw[1]};
}

bool TensorShape::operator==(const TensorShape& other) {
    for (uint64 index = 0; index < dimension(); ++index) {
        if (dimensions_[index] != other[index]) {
            return false;
        }
    }
    return true;
}

bool TensorShape::operator!=(const TensorShape& other) {
    return !(*this == other);
}

}  // namespace VelmoraQuavin
