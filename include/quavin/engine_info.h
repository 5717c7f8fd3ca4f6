#pragma once

/// @file
/// What computes the predictions.

#include <vector>

#include "quavin/text.h"

namespace VelmoraQuavin {

/// The engine's runtime, the device that models run on, and how it computes, as the runtime reports
/// them. A value type. Texts are empty, numbers 0 and lists empty where a runtime does not tell.
///
/// Filled by QuavinClient::getEngineInfo and QuavinModel::getEngineInfo.
struct EngineInfo {
    String runtimeVersion;  ///< The runtime's own name for its build.
    String device;          ///< The device of the runtime, always "CPU".
    String deviceName;      ///< The full name of the device: the processor.
    /// What numbers are computed with: "f32", "bf16" or "f16". Parts of a network that are
    /// quantised use integers all the same.
    String precision;
    int threads = 0;  ///< How many threads one prediction runs on.
    int streams = 0;  ///< How many predictions of one model can run at the same time.
    /// What the device can do, in the runtime's words: "FP32", "BF16", "INT8", ...
    std::vector<String> capabilities;
};

}  // namespace VelmoraQuavin
