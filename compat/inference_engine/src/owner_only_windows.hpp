// Access lists for new files.
#pragma once

#include <windows.h>

#include <vector>

namespace InferenceEngine::runtime {

/** Lets only this process's user open a new file, whatever its directory would pass on. */
class OwnerOnly {
public:
    /** @throws Failure */
    OwnerOnly();
    OwnerOnly(const OwnerOnly&) = delete;
    OwnerOnly& operator=(const OwnerOnly&) = delete;
    ~OwnerOnly() = default;

    SECURITY_ATTRIBUTES* get() noexcept { return &attributes_; }

private:
    std::vector<unsigned char> list_;
    SECURITY_DESCRIPTOR descriptor_{};
    SECURITY_ATTRIBUTES attributes_{};
};

}  // namespace InferenceEngine::runtime
