#include "quavin/status.h"

namespace VelmoraQuavin {

Exception::Exception(const String& message) : Exception(message, FAILURE) {}

Exception::Exception(const String& message, const STATUS_CODE& code)
    : message_(std::make_shared<const String>(message)), statusCode_(code) {}

Exception::~Exception() = default;

const char* Exception::what() const noexcept {
    return reinterpret_cast<const char*>(message_->c_str());
}

FileException::FileException(const String& message) : Exception(message, FILE_ERROR) {}
FileException::~FileException() = default;

InvalidOperationException::InvalidOperationException(const String& message)
    : Exception(message, INVALID_OPERATION) {}
InvalidOperationException::~InvalidOperationException() = default;

InvalidArgumentsException::InvalidArgumentsException(const String& message)
    : Exception(message, INVALID_ARGUMENTS) {}
InvalidArgumentsException::~InvalidArgumentsException() = default;

InvalidTypeException::InvalidTypeException(const String& message)
    : Exception(message, INVALID_TYPE) {}
InvalidTypeException::~InvalidTypeException() = default;

InvalidTensorDataTypeException::InvalidTensorDataTypeException(const String& message)
    : Exception(message, INVALID_TENSOR_DATA_TYPE) {}
InvalidTensorDataTypeException::~InvalidTensorDataTypeException() = default;

ModelMetaDataException::ModelMetaDataException(const String& message)
    : Exception(message, MODEL_METADATA_ERROR) {}
ModelMetaDataException::~ModelMetaDataException() = default;

MLFrameworkException::MLFrameworkException(const String& message)
    : Exception(message, ML_FRAMEWORK_ERROR) {}
MLFrameworkException::~MLFrameworkException() = default;

RangeException::RangeException(const String& message) : Exception(message, OUT_OF_RANGE) {}
RangeException::~RangeException() = default;

SignatureException::SignatureException(const String& message)
    : Exception(message, SIGNATURE_ERROR) {}
SignatureException::~SignatureException() = default;

}  // namespace VelmoraQuavin
