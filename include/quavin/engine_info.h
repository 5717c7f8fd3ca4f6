#pragma once

/// @file
/// What the predictions are computed on, and how.

#include <vector>

#include "quavin/text.h"

namespace VelmoraQuavin {

/// The engine's runtime, the device that models run on, and how it computes, as reported by the
/// runtime. A value type. Whatever a runtime does not report is empty or 0.
///
/// Filled by QuavinClient::getEngineInfo and QuavinModel::getEngineInfo.
struct EngineInfo {
    String runtimeVersion;  ///< The runtime's own name for its build.
    String device;          ///< The runtime's device, always "CPU".
    String deviceName;      ///< The full name of the device: the processor.
    /// The precision of the computation: "f32", "bf16" or "f16". Quantised parts of a network use
    /// integers regardless.
    String precision;
    int threads = 0;  ///< Threads that one prediction runs on.
    int streams = 0;  ///< Predictions of one model that can run at the same time.
    /// What the device supports, in the runtime's terms: "FP32", "BF16", "INT8", ...
    std::vector<String> capabilities;
};

}  // namespace VelmoraQuavin
