#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "failure.hpp"
#include "scratch_descriptor.hpp"

namespace InferenceEngine::runtime {

ScratchDescriptor::ScratchDescriptor()
    : path_((std::filesystem::temp_directory_path() / "quavin-XXXXXX").string()),
      descriptor_(mkstemp(path_.data())) {
    if (descriptor_ < 0) {
        throw Failure(GENERAL_ERROR, "No temporary file can be created: " +
                                         std::generic_category().message(errno));
    }
    fcntl(descriptor_, F_SETFD, FD_CLOEXEC);
}

ScratchDescriptor::~ScratchDescriptor() {
    unlink(path_.c_str());
    close(descriptor_);
}

}  // namespace InferenceEngine::runtime
