#include "tools/quavin/io/wiped_bytes.h"

#include <algorithm>
#include <utility>

#include "core/secure_wipe.h"

namespace quavin_tool {

WipedBytes::WipedBytes(std::uint64_t size) : data_(new char[size]), size_(size) {}
WipedBytes::WipedBytes(WipedBytes&& other) noexcept
    : data_(std::move(other.data_)), size_(std::exchange(other.size_, 0)) {}
WipedBytes& WipedBytes::operator=(WipedBytes&& other) noexcept {
    if (this != &other) {
        wipe();
        data_ = std::move(other.data_);
        size_ = std::exchange(other.size_, 0);
    }
    return *this;
}
WipedBytes::~WipedBytes() {
    wipe();
}

void WipedBytes::wipe() {
    if (data_ != nullptr) {
        VelmoraQuavin::internal::secureWipe(data_.get(), size_);
    }
}

void WipedBytes::truncate(std::uint64_t size) {
    VelmoraQuavin::internal::secureWipe(data_.get() + size, size_ - size);
    size_ = size;
}

WipedBytes bytesOf(std::string_view text) {
    WipedBytes bytes(text.size());
    std::copy(text.begin(), text.end(), bytes.data());
    return bytes;
}

}  // namespace quavin_tool
