// Which engine stands behind the interface.
#pragma once

namespace InferenceEngine {

/** Names the build of an engine. The texts live as long as the process. */
struct Version {
    struct {
        int major;
        int minor;
    } apiVersion;
    const char* buildNumber;
    const char* description;
};

/** The build of the runtime; texts are empty where it does not tell. Never null. */
const Version* GetInferenceEngineVersion() noexcept;

}  // namespace InferenceEngine
