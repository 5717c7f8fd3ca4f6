#include "ie/version.hpp"

#include <openvino/c/openvino.h>

namespace InferenceEngine {
namespace {

Version readVersion() noexcept {
    constexpr int kInterfaceMajor = 2;  // as reported by the releases of 2020
    constexpr int kInterfaceMinor = 1;
    // Never freed: callers may keep the texts.
    ov_version_t runtime{};
    if (ov_get_openvino_version(&runtime) != ::OK) {
        return {{kInterfaceMajor, kInterfaceMinor}, "", ""};
    }
    return {{kInterfaceMajor, kInterfaceMinor}, runtime.buildNumber, runtime.description};
}

}  // namespace

const Version* GetInferenceEngineVersion() noexcept {
    static const Version version = readVersion();
    return &version;
}

}  // namespace InferenceEngine
