// Which engine is behind the interface.
#pragma once

namespace InferenceEngine {

/** Identifies the build of an engine. The texts live as long as the process. */
struct Version {
    struct {
        int major;
        int minor;
    } apiVersion;
    const char* buildNumber;
    const char* description;
};

/** The build of the runtime; the texts are empty if it does not report them. Never null. */
const Version* GetInferenceEngineVersion() noexcept;

}  // namespace InferenceEngine
