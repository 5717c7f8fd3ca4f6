// A file for what the runtime writes to a path alone.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace InferenceEngine::runtime {

/**
 * A new file that nobody else can open, on Linux without a place on any disk. What it holds may be
 * secret: it is overwritten before the file is removed, with this object.
 */
class ScratchFile {
public:
    /** @throws Failure; NOT_IMPLEMENTED if the runtime couldn't be told the path */
    ScratchFile();
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile();

    /** As the runtime takes it. */
    const std::string& path() const noexcept;

    /**
     * Everything that has been written by now, for the first call; later ones return the same.
     * Valid as long as the file.
     *
     * @throws Failure
     */
    std::string_view content();

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace InferenceEngine::runtime
