#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

#include "failure.hpp"
#include "scratch_descriptor.hpp"
#include "scratch_file.hpp"
#include "wiped_text.hpp"

namespace InferenceEngine::runtime {

class ScratchFile::Impl {
public:
    Impl() = default;
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    // Also maps what nobody asked for, after a failed export for example, just to overwrite it.
    ~Impl() {
        map();
        if (memory_ != nullptr) {
            wipe(memory_, size_);
            munmap(memory_, size_);
        }
    }

    const std::string& path() const noexcept { return file_.path(); }

    std::string_view content() {
        if (!map()) {
            throw Failure(GENERAL_ERROR, "The exported network can't be read: " +
                                             std::generic_category().message(errno));
        }
        return {static_cast<const char*>(memory_), size_};
    }

private:
    /** Returns whether it worked; an empty file has no memory. */
    bool map() noexcept {
        struct stat status {};
        if (memory_ != nullptr) {
            return true;
        }
        if (fstat(file_.get(), &status) != 0) {
            return false;
        }
        const auto size = static_cast<std::size_t>(status.st_size);
        if (size == 0) {
            return true;
        }
        void* const memory =
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file_.get(), 0);
        if (memory == MAP_FAILED) {
            return false;
        }
        memory_ = memory;
        size_ = size;
        return true;
    }

    ScratchDescriptor file_;
    void* memory_ = nullptr;
    std::size_t size_ = 0;
};

ScratchFile::ScratchFile() : impl_(std::make_unique<Impl>()) {}

ScratchFile::~ScratchFile() = default;

const std::string& ScratchFile::path() const noexcept {
    return impl_->path();
}

std::string_view ScratchFile::content() {
    return impl_->content();
}

}  // namespace InferenceEngine::runtime
