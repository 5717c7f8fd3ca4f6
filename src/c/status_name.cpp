#include "quavin/c.h"
#include "quavin/status.h"

namespace VelmoraQuavin {
namespace {

static_assert(QUAVIN_SUCCESS == static_cast<int>(SUCCESS));
static_assert(QUAVIN_FAILURE == static_cast<int>(FAILURE));
static_assert(QUAVIN_FILE_ERROR == static_cast<int>(FILE_ERROR));
static_assert(QUAVIN_INVALID_MODEL_PATH == static_cast<int>(INVALID_MODEL_PATH));
static_assert(QUAVIN_INVALID_WEIGHTS_PATH == static_cast<int>(INVALID_WEIGHTS_PATH));
static_assert(QUAVIN_INVALID_OPERATION == static_cast<int>(INVALID_OPERATION));
static_assert(QUAVIN_INVALID_ARGUMENTS == static_cast<int>(INVALID_ARGUMENTS));
static_assert(QUAVIN_INVALID_TYPE == static_cast<int>(INVALID_TYPE));
static_assert(QUAVIN_INVALID_TENSOR_DATA_TYPE == static_cast<int>(INVALID_TENSOR_DATA_TYPE));
static_assert(QUAVIN_MODEL_NOT_LOADED == static_cast<int>(MODEL_NOT_LOADED));
static_assert(QUAVIN_MODEL_METADATA_ERROR == static_cast<int>(MODEL_METADATA_ERROR));
static_assert(QUAVIN_ML_FRAMEWORK_ERROR == static_cast<int>(ML_FRAMEWORK_ERROR));
static_assert(QUAVIN_OUT_OF_RANGE == static_cast<int>(OUT_OF_RANGE));
static_assert(QUAVIN_NOT_INITIALIZED == static_cast<int>(NOT_INITIALIZED));
static_assert(QUAVIN_MEMORY_LIMIT_EXCEEDED == static_cast<int>(MEMORY_LIMIT_EXCEEDED));
static_assert(QUAVIN_TENSOR_SIZE_MISMATCH == static_cast<int>(TENSOR_SIZE_MISMATCH));
static_assert(QUAVIN_ALLOCATION_FAILED == static_cast<int>(ALLOCATION_FAILED));
static_assert(QUAVIN_EMPTY_INPUT_DESCRIPTOR == static_cast<int>(EMPTY_INPUT_DESCRIPTOR));
static_assert(QUAVIN_TAR_CHECKSUM_MISMATCH == static_cast<int>(TAR_CHECKSUM_MISMATCH));
static_assert(QUAVIN_TAR_UNSUPPORTED_ENTRY == static_cast<int>(TAR_UNSUPPORTED_ENTRY));
static_assert(QUAVIN_SIGNATURE_ERROR == static_cast<int>(SIGNATURE_ERROR));

// Without a default, so that the compiler asks for the name of a new code.
const char* nameOf(STATUS_CODE code) {
    switch (code) {
        case SUCCESS:
            return "SUCCESS";
        case FAILURE:
            return "FAILURE";
        case FILE_ERROR:
            return "FILE_ERROR";
        case INVALID_MODEL_PATH:
            return "INVALID_MODEL_PATH";
        case INVALID_WEIGHTS_PATH:
            return "INVALID_WEIGHTS_PATH";
        case INVALID_OPERATION:
            return "INVALID_OPERATION";
        case INVALID_ARGUMENTS:
            return "INVALID_ARGUMENTS";
        case INVALID_TYPE:
            return "INVALID_TYPE";
        case INVALID_TENSOR_DATA_TYPE:
            return "INVALID_TENSOR_DATA_TYPE";
        case MODEL_NOT_LOADED:
            return "MODEL_NOT_LOADED";
        case MODEL_METADATA_ERROR:
            return "MODEL_METADATA_ERROR";
        case ML_FRAMEWORK_ERROR:
            return "ML_FRAMEWORK_ERROR";
        case OUT_OF_RANGE:
            return "OUT_OF_RANGE";
        case NOT_INITIALIZED:
            return "NOT_INITIALIZED";
        case MEMORY_LIMIT_EXCEEDED:
            return "MEMORY_LIMIT_EXCEEDED";
        case TENSOR_SIZE_MISMATCH:
            return "TENSOR_SIZE_MISMATCH";
        case ALLOCATION_FAILED:
            return "ALLOCATION_FAILED";
        case EMPTY_INPUT_DESCRIPTOR:
            return "EMPTY_INPUT_DESCRIPTOR";
        case TAR_CHECKSUM_MISMATCH:
            return "TAR_CHECKSUM_MISMATCH";
        case TAR_UNSUPPORTED_ENTRY:
            return "TAR_UNSUPPORTED_ENTRY";
        case SIGNATURE_ERROR:
            return "SIGNATURE_ERROR";
    }
    return "unknown status";
}

}  // namespace
}  // namespace VelmoraQuavin

const char* quavin_status_name(quavin_status status) {
    return VelmoraQuavin::nameOf(static_cast<VelmoraQuavin::STATUS_CODE>(status));
}
