// The small types that every other header of the interface needs.
#pragma once

#include <cstddef>
#include <vector>

namespace InferenceEngine {

using SizeVector = std::vector<std::size_t>;

/** The result of the noexcept operations of the abstract interfaces. */
enum StatusCode : int {
    OK = 0,
    GENERAL_ERROR = -1,
    NOT_IMPLEMENTED = -2,
    NETWORK_NOT_LOADED = -3,
    PARAMETER_MISMATCH = -4,
    NOT_FOUND = -5,
    OUT_OF_BOUNDS = -6,
    UNEXPECTED = -7,
    REQUEST_BUSY = -8,
    RESULT_NOT_READY = -9,
    NOT_ALLOCATED = -10,
    INFER_NOT_STARTED = -11,
    NETWORK_NOT_READ = -12,
};

/** The text that goes with a failing status. Operations that succeed leave it untouched. */
struct ResponseDesc {
    char msg[4096] = {};  // part of the interface's layout
};

}  // namespace InferenceEngine
