#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "failure.hpp"
#include "scratch_descriptor.hpp"

namespace InferenceEngine::runtime {

// In memory, so that nothing of a secret network ever reaches a disk.
ScratchDescriptor::ScratchDescriptor() : descriptor_(memfd_create("quavin", MFD_CLOEXEC)) {
    if (descriptor_ < 0) {
        throw Failure(GENERAL_ERROR, "No file can be created in memory: " +
                                         std::generic_category().message(errno));
    }
    path_ = "/proc/self/fd/" + std::to_string(descriptor_);
}

ScratchDescriptor::~ScratchDescriptor() {
    close(descriptor_);
}

}  // namespace InferenceEngine::runtime
