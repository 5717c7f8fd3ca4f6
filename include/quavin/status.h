#pragma once

/// @file
/// Status codes, the status object and the exception classes.
///
/// Most public operations return a QuavinStatus. Internally, errors are exceptions derived from
/// Exception, each class with a fixed code.

#include <cstdint>
#include <exception>
#include <memory>

#include "quavin/export.h"
#include "quavin/text.h"

namespace VelmoraQuavin {

/// The result of an operation. The numbers are part of the interface and never change; success is
/// 1, and 0, 10 and 20 are not used. docs/errors.md lists what returns each code, and what to do
/// about it.
enum STATUS_CODE : std::uint32_t {
    SUCCESS = 1,               ///< Success: the only code for which QuavinStatus::ok() is true.
    FAILURE = 2,               ///< Any failure without a more specific code.
    FILE_ERROR = 3,            ///< A file could not be opened, read, deleted, decrypted or parsed.
    INVALID_MODEL_PATH = 4,    ///< No model path, or a target with fewer than two file components.
    INVALID_WEIGHTS_PATH = 5,  ///< The weights component has no path.
    INVALID_OPERATION = 6,     ///< The operation does not fit the object's state.
    INVALID_ARGUMENTS = 7,     ///< An argument is unusable.
    INVALID_TYPE = 8,          ///< A feature or blob is not of the requested type.
    INVALID_TENSOR_DATA_TYPE = 9,  ///< The engine does not support the element type.
    MODEL_NOT_LOADED = 11,         ///< The model is not loaded, or not registered.
    MODEL_METADATA_ERROR = 12,     ///< The manifest is missing, malformed or lacks what is needed.
    ML_FRAMEWORK_ERROR = 13,       ///< The inference engine failed.
    OUT_OF_RANGE = 14,             ///< An index is past the end.
    NOT_INITIALIZED = 15,          ///< The library is off; see QuavinClient::init.
    MEMORY_LIMIT_EXCEEDED = 16,   ///< Returned by a model's memory account; see ModelRuntimeStatus.
    TENSOR_SIZE_MISMATCH = 17,    ///< The new shape needs a different number of bytes.
    ALLOCATION_FAILED = 18,       ///< The tensor cannot allocate memory.
    EMPTY_INPUT_DESCRIPTOR = 19,  ///< No feature has the name of a network input.
    TAR_CHECKSUM_MISMATCH = 21,   ///< A tar header's checksum is wrong.
    TAR_UNSUPPORTED_ENTRY = 22,   ///< A tar entry is neither a file nor a directory.
    SIGNATURE_ERROR = 23,         ///< The package is not what a trusted key signed.
};

/// The outcome of an operation: a code and a human-readable description.
///
/// A value type; copies are independent. Compare codes, not descriptions. A default status is *not*
/// a success. If QUAVIN_NODISCARD_STATUS is defined, the compiler warns about dropped ones.
///
/// @code
/// QuavinStatus status = model->allocateInputs(inputs);
/// if (!status.ok()) {
///     std::cerr << status.getCode() << ": " << status.getDescription() << '\n';
/// }
/// @endcode
class QUAVIN_STATUS_API QuavinStatus {
public:
    /// Code FAILURE, empty description.
    QuavinStatus();
    /// Stores both.
    QuavinStatus(STATUS_CODE statusCode, const String& text);

    /// The code.
    STATUS_CODE getCode() const { return code; }
    /// Replaces the code; the description stays.
    void setCode(STATUS_CODE newCode) { code = newCode; }
    /// A copy of the description, which may be empty.
    String getDescription() const { return description; }
    /// Replaces the description; the code stays.
    void setDescription(String newDescription);
    /// Whether the code is SUCCESS.
    bool ok() const { return code == SUCCESS; }

    STATUS_CODE code;    ///< The code.
    String description;  ///< The description; empty if there is nothing to add to the code.
};

/// The base of the library's exceptions: a message and a status code.
///
/// Thrown by value; catch it by reference. Only operations whose documentation says so throw, most
/// notably QuavinModel::predict; getStatusFromCurrentException() converts the exception being
/// handled into a status.
class QUAVIN_API Exception : public std::exception {
public:
    /// Code FAILURE.
    explicit Exception(const String& message);
    /// Stores both.
    Exception(const String& message, const STATUS_CODE& code);
    Exception(const Exception&) = default;             ///< Copies message and code.
    Exception& operator=(const Exception&) = default;  ///< Copies message and code.
    ~Exception() override;

    /// The message, zero-terminated; valid while the exception lives.
    const char* what() const noexcept override;
    /// The code.
    STATUS_CODE getStatusCode() const { return statusCode_; }

private:
    // Shared, so that copying an exception does not throw.
    std::shared_ptr<const String> message_;
    STATUS_CODE statusCode_;
};

/// A file could not be opened, read, deleted, decrypted or parsed: code FILE_ERROR.
class QUAVIN_API FileException : public Exception {
public:
    explicit FileException(const String& message);             ///< Stores the message.
    FileException(const FileException&) = default;             ///< Copies message and code.
    FileException& operator=(const FileException&) = default;  ///< Copies message and code.
    ~FileException() override;
};

/// The operation does not fit the object's state: code INVALID_OPERATION.
class QUAVIN_API InvalidOperationException : public Exception {
public:
    explicit InvalidOperationException(const String& message);  ///< Stores the message.
    InvalidOperationException(const InvalidOperationException&) =
        default;  ///< Copies message and code.
    InvalidOperationException& operator=(const InvalidOperationException&) =
        default;  ///< Copies message and code.
    ~InvalidOperationException() override;
};

/// An argument is unusable: code INVALID_ARGUMENTS.
class QUAVIN_API InvalidArgumentsException : public Exception {
public:
    explicit InvalidArgumentsException(const String& message);  ///< Stores the message.
    InvalidArgumentsException(const InvalidArgumentsException&) =
        default;  ///< Copies message and code.
    InvalidArgumentsException& operator=(const InvalidArgumentsException&) =
        default;  ///< Copies message and code.
    ~InvalidArgumentsException() override;
};

/// A feature or blob is not of the requested type: code INVALID_TYPE.
class QUAVIN_API InvalidTypeException : public Exception {
public:
    explicit InvalidTypeException(const String& message);         ///< Stores the message.
    InvalidTypeException(const InvalidTypeException&) = default;  ///< Copies message and code.
    InvalidTypeException& operator=(const InvalidTypeException&) =
        default;  ///< Copies message and code.
    ~InvalidTypeException() override;
};

/// The engine does not support the element type: code INVALID_TENSOR_DATA_TYPE.
class QUAVIN_API InvalidTensorDataTypeException : public Exception {
public:
    explicit InvalidTensorDataTypeException(const String& message);  ///< Stores the message.
    InvalidTensorDataTypeException(const InvalidTensorDataTypeException&) =
        default;  ///< Copies message and code.
    InvalidTensorDataTypeException& operator=(const InvalidTensorDataTypeException&) =
        default;  ///< Copies message and code.
    ~InvalidTensorDataTypeException() override;
};

/// The manifest is missing, malformed or lacks what is needed: code MODEL_METADATA_ERROR.
class QUAVIN_API ModelMetaDataException : public Exception {
public:
    explicit ModelMetaDataException(const String& message);           ///< Stores the message.
    ModelMetaDataException(const ModelMetaDataException&) = default;  ///< Copies message and code.
    ModelMetaDataException& operator=(const ModelMetaDataException&) =
        default;  ///< Copies message and code.
    ~ModelMetaDataException() override;
};

/// The inference engine failed: code ML_FRAMEWORK_ERROR.
class QUAVIN_API MLFrameworkException : public Exception {
public:
    explicit MLFrameworkException(const String& message);         ///< Stores the message.
    MLFrameworkException(const MLFrameworkException&) = default;  ///< Copies message and code.
    MLFrameworkException& operator=(const MLFrameworkException&) =
        default;  ///< Copies message and code.
    ~MLFrameworkException() override;
};

/// An index is past the end: code OUT_OF_RANGE.
class QUAVIN_API RangeException : public Exception {
public:
    explicit RangeException(const String& message);              ///< Stores the message.
    RangeException(const RangeException&) = default;             ///< Copies message and code.
    RangeException& operator=(const RangeException&) = default;  ///< Copies message and code.
    ~RangeException() override;
};

/// The package is not what a trusted key signed: code SIGNATURE_ERROR.
class QUAVIN_API SignatureException : public Exception {
public:
    explicit SignatureException(const String& message);       ///< Stores the message.
    SignatureException(const SignatureException&) = default;  ///< Copies message and code.
    SignatureException& operator=(const SignatureException&) =
        default;  ///< Copies message and code.
    ~SignatureException() override;
};

/// Converts the exception being handled into a status.
///
/// An Exception yields its own code and message; any other standard exception yields FAILURE and
/// its message ("Unknown exception" if it has none); anything else yields FAILURE and "unknown
/// error occured". Descriptions end at their first zero byte.
///
/// Call it only inside a catch handler: with no exception being handled, the process terminates.
/// Never throws: short of memory for the message, it says that. May be called from any thread.
///
/// @code
/// try {
///     status = model->predict(inputs, outputs);
/// } catch (...) {
///     status = VelmoraQuavin::getStatusFromCurrentException();
/// }
/// @endcode
QUAVIN_API QuavinStatus getStatusFromCurrentException();

}  // namespace VelmoraQuavin
