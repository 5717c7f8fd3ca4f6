#include "c/package_buffers.h"

#include "c/guard.h"

namespace VelmoraQuavin::internal {
namespace {

void release(const quavin_buffer& buffer) noexcept {
    try {
        if (buffer.release != nullptr) {
            buffer.release(buffer.user);
        }
    } catch (...) {
        // A host's exception, which there is nobody to tell about.
    }
}

/// Releases the buffers that nothing has taken over yet.
class Untaken {
public:
    /// @param buffers null: there are none.
    Untaken(const quavin_buffer* buffers, std::size_t count)
        : next_(buffers), end_(buffers == nullptr ? nullptr : buffers + count) {}
    Untaken(const Untaken&) = delete;
    Untaken& operator=(const Untaken&) = delete;
    ~Untaken() {
        while (!isEmpty()) {
            release(take());
        }
    }

    bool isEmpty() const { return next_ == end_; }
    const quavin_buffer& take() { return *next_++; }

private:
    const quavin_buffer* next_;
    const quavin_buffer* end_;
};

// Calls the deleter itself if it cannot be kept.
std::shared_ptr<const void> ownerOf(const quavin_buffer& buffer) {
    if (buffer.release == nullptr) {
        return nullptr;
    }
    return {buffer.data, [buffer](const void* /*data*/) { release(buffer); }};
}

}  // namespace

PackageBuffers::PackageBuffers(const quavin_buffer* buffers, std::size_t count)
    : given_(buffers != nullptr) {
    Untaken untaken(buffers, count);
    files_.reserve(given_ ? count : 0);
    while (!untaken.isEmpty()) {
        const quavin_buffer& buffer = untaken.take();
        std::shared_ptr<const void> owner = ownerOf(buffer);
        named_ = named_ && buffer.name != nullptr;
        files_.push_back({String(buffer.name), buffer.data, buffer.size, std::move(owner)});
    }
}

const std::vector<PackageBuffer>& PackageBuffers::files() const {
    requireGiven(given_ ? this : nullptr, "buffers");
    requireGiven(named_ ? this : nullptr, "name");
    return files_;
}

}  // namespace VelmoraQuavin::internal
