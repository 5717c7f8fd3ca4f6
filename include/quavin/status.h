#pragma once

/// @file
/// Status codes, the status object and the exception family.
///
/// Operations at the edge of the library answer with a QuavinStatus; inside, errors travel as
/// exceptions of the family rooted in Exception, each class with a fixed code.

#include <cstdint>
#include <exception>
#include <memory>

#include "quavin/export.h"
#include "quavin/text.h"

namespace VelmoraQuavin {

/// What came of an operation. The numbers are part of the interface and never change; success is 1,
/// and 0, 10 and 20 are not used. docs/errors.md tells who answers with each, and what to do.
enum STATUS_CODE : std::uint32_t {
    SUCCESS = 1,             ///< It succeeded: the only code for which QuavinStatus::ok() is true.
    FAILURE = 2,             ///< Any failure without a code of its own.
    FILE_ERROR = 3,          ///< A file could not be opened, deleted, decrypted or understood.
    INVALID_MODEL_PATH = 4,  ///< No model path, or a target with fewer than two file components.
    INVALID_WEIGHTS_PATH = 5,      ///< The weights component has no path.
    INVALID_OPERATION = 6,         ///< The operation does not fit the object's state.
    INVALID_ARGUMENTS = 7,         ///< An argument has no usable value.
    INVALID_TYPE = 8,              ///< A feature or blob is of another type than the one asked for.
    INVALID_TENSOR_DATA_TYPE = 9,  ///< The engine does not take the element type.
    MODEL_NOT_LOADED = 11,         ///< There is no loaded or registered model.
    MODEL_METADATA_ERROR = 12,     ///< The manifest is missing, malformed or lacks what is needed.
    ML_FRAMEWORK_ERROR = 13,       ///< The inference engine failed.
    OUT_OF_RANGE = 14,             ///< An index is past the end.
    NOT_INITIALIZED = 15,          ///< QuavinClient::init has not been called.
    MEMORY_LIMIT_EXCEEDED = 16,    ///< Answer of a model's memory account; see ModelRuntimeStatus.
    TENSOR_SIZE_MISMATCH = 17,     ///< The new shape needs another number of bytes.
    ALLOCATION_FAILED = 18,        ///< The tensor cannot get memory.
    EMPTY_INPUT_DESCRIPTOR = 19,   ///< A network input has no feature of its name.
    TAR_CHECKSUM_MISMATCH = 21,    ///< A tar header does not add up.
    TAR_UNSUPPORTED_ENTRY = 22,    ///< A tar entry is neither a file nor a directory.
};

/// The outcome of an operation: a code and a text for people.
///
/// A value type; copies are independent. Compare codes, not texts. A default status is *not* a
/// success.
///
/// @code
/// QuavinStatus status = model->allocateInputs(inputs);
/// if (!status.ok()) {
///     std::cerr << status.getCode() << ": " << status.getDescription() << '\n';
/// }
/// @endcode
class QUAVIN_API QuavinStatus {
public:
    /// Code FAILURE, no text.
    QuavinStatus();
    /// Stores both.
    QuavinStatus(STATUS_CODE statusCode, const String& text);

    /// The code.
    STATUS_CODE getCode() const { return code; }
    /// Replaces the code and leaves the text.
    void setCode(STATUS_CODE newCode) { code = newCode; }
    /// A copy of the text, which may be empty.
    String getDescription() const { return description; }
    /// Replaces the text and leaves the code.
    void setDescription(String newDescription);
    /// Whether the code is SUCCESS.
    bool ok() const { return code == SUCCESS; }

    STATUS_CODE code;    ///< The code.
    String description;  ///< The text; empty unless the producer has something to say.
};

/// The root of the library's exceptions: a message and the status code it stands for.
///
/// Thrown by value, caught by reference. Hosts meet exceptions where an operation's documentation
/// says so, above all from QuavinModel::predict; getStatusFromCurrentException() turns the one
/// being handled into a status.
class QUAVIN_API Exception : public std::exception {
public:
    /// Code FAILURE.
    explicit Exception(const String& message);
    /// Stores both.
    Exception(const String& message, const STATUS_CODE& code);
    Exception(const Exception&) = default;             ///< Copies message and code.
    Exception& operator=(const Exception&) = default;  ///< Copies message and code.
    ~Exception() override;

    /// The message, ended by a zero byte; valid while the exception lives.
    const char* what() const noexcept override;
    /// The code.
    STATUS_CODE getStatusCode() const { return statusCode_; }

private:
    // Shared, so that copying an exception does not throw.
    std::shared_ptr<const String> message_;
    STATUS_CODE statusCode_;
};

/// A file could not be opened, deleted, decrypted or understood: code FILE_ERROR.
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

/// An argument has no usable value: code INVALID_ARGUMENTS.
class QUAVIN_API InvalidArgumentsException : public Exception {
public:
    explicit InvalidArgumentsException(const String& message);  ///< Stores the message.
    InvalidArgumentsException(const InvalidArgumentsException&) =
        default;  ///< Copies message and code.
    InvalidArgumentsException& operator=(const InvalidArgumentsException&) =
        default;  ///< Copies message and code.
    ~InvalidArgumentsException() override;
};

/// A feature or blob is of another type than the one asked for: code INVALID_TYPE.
class QUAVIN_API InvalidTypeException : public Exception {
public:
    explicit InvalidTypeException(const String& message);         ///< Stores the message.
    InvalidTypeException(const InvalidTypeException&) = default;  ///< Copies message and code.
    InvalidTypeException& operator=(const InvalidTypeException&) =
        default;  ///< Copies message and code.
    ~InvalidTypeException() override;
};

/// The engine does not take the element type: code INVALID_TENSOR_DATA_TYPE.
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

/// Turns the exception being handled into a status.
///
/// An Exception gives its own code and message; any other standard exception gives FAILURE and its
/// text ("Unknown exception" where it has none); everything else gives FAILURE and "unknown error
/// occured". Texts end at their first zero byte.
///
/// To be called from inside a catch handler only: with no exception being handled the process ends.
/// Throws nothing but a failure to allocate the text. May be called from any thread.
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
