// A scratch file where files have descriptors.
#pragma once

#include <string>

namespace InferenceEngine::runtime {

/** A new empty file that only its owner can open; removed with this object. */
class ScratchDescriptor {
public:
    /** @throws Failure */
    ScratchDescriptor();
    ScratchDescriptor(const ScratchDescriptor&) = delete;
    ScratchDescriptor& operator=(const ScratchDescriptor&) = delete;
    ~ScratchDescriptor();

    int get() const noexcept { return descriptor_; }
    const std::string& path() const noexcept { return path_; }

private:
    std::string path_;
    int descriptor_ = -1;
};

}  // namespace InferenceEngine::runtime
