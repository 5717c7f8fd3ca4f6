#pragma once

/// @file
/// Shapes, element types and tensors.

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <vector>

#include "quavin/export.h"
#include "quavin/status.h"
#include "quavin/text.h"

namespace VelmoraQuavin {

namespace internal {
struct DescriptorAccess;
}

/// The dimensions of a tensor, outermost first; image-like tensors are ordered batch, channels,
/// height, width.
///
/// A dimension of -1 is not known until run time. Nothing is checked: any value is stored as given.
/// A value type; several threads may read one object at once. Its equality operators disagree with
/// each other: use compare().
struct QUAVIN_API TensorShape {
    /// No dimensions.
    TensorShape();
    /// One dimension of the given extent.
    explicit TensorShape(int64 d0);
    /// Two dimensions.
    TensorShape(int64 d0, int64 d1);
    /// Three dimensions.
    TensorShape(int64 d0, int64 d1, int64 d2);
    /// Four dimensions.
    TensorShape(int64 d0, int64 d1, int64 d2, int64 d3);
    /// Five dimensions.
    TensorShape(int64 d0, int64 d1, int64 d2, int64 d3, int64 d4);
    /// The listed dimensions.
    TensorShape(std::initializer_list<int64> dimensions);
    /// The listed dimensions.
    TensorShape(const std::vector<int64>& dimensions);
    /// The listed dimensions, moved.
    TensorShape(std::vector<int64>&& dimensions) noexcept;

    /// The number of dimensions.
    uint64 dimension() const { return dimensions_.size(); }
    /// The product of all dimensions, 1 for an empty shape. A dimension of -1 counts as -1: check
    /// TensorDescriptor::variableShape() first if you need an element count.
    int64 size() const;
    /// Always true: a placeholder, not a check.
    bool valid() const { return true; }
    /// The dimension at `index`.
    /// @throws RangeException if `index` is not less than dimension().
    int64& operator[](uint64 index);
    /// The dimension at `index`.
    /// @throws RangeException if `index` is not less than dimension().
    const int64& operator[](uint64 index) const;
    /// A copy of the dimensions.
    std::vector<int64> shapeVector() const { return dimensions_; }

    /// The last three dimensions; missing leading ones are 1.
    std::vector<int64> getCHW() const;
    /// The last four dimensions; missing leading ones are 1.
    std::vector<int64> getNCHW() const;
    /// getNCHW() in the order batch, height, width, channels.
    std::vector<int64> getNHWC() const;

    /// Whether both have the same dimensions: the equality to use.
    bool compare(const TensorShape& other) const { return dimensions_ == other.dimensions_; }
    /// Equivalent to compare(); chosen if the left operand is const.
    bool operator==(const TensorShape& other) const { return compare(other); }
    /// Whether `other` *begins with* the dimensions of this shape: unlike in the const overload, a
    /// longer `other` can be equal, and an empty shape on the left equals anything.
    /// @throws RangeException if `other` is shorter and all its dimensions match.
    bool operator==(const TensorShape& other);
    /// The opposite of the non-const operator==.
    /// @throws RangeException if that operator does.
    bool operator!=(const TensorShape& other);
    /// The const overload for a non-const `other`. It makes C++20, which also tries the operands in
    /// reverse, pick the overload by the left operand as C++17 does.
    bool operator==(TensorShape& other) const { return compare(other); }
    /// The non-const overload for a non-const `other`.
    /// @throws RangeException if that operator does.
    bool operator==(TensorShape& other) { return *this == static_cast<const TensorShape&>(other); }

private:
    std::vector<int64> rightAligned(std::size_t places) const;

    std::vector<int64> dimensions_;
};

/// The type of a tensor's elements. The numbers are part of the interface.
enum class DataType : std::int32_t {
    UNDEFINED = 0,  ///< No type; elements have 0 bytes.
    BOOL = 1,       ///< "bool", 1 byte.
    INT8 = 2,       ///< "int8", 1 byte.
    UINT8 = 3,      ///< "uint8", 1 byte.
    INT16 = 4,      ///< "int16", 2 bytes.
    UINT16 = 5,     ///< "uint16", 2 bytes.
    INT32 = 6,      ///< "int32", 4 bytes.
    UINT32 = 7,     ///< "uint32", 4 bytes.
    INT64 = 8,      ///< "int64", 8 bytes.
    UINT64 = 9,     ///< "uint64", 8 bytes.
    FLOAT16 = 10,   ///< "float16", 2 bytes.
    FLOAT = 11,     ///< "float", 4 bytes.
    DOUBLE = 12,    ///< "double", 8 bytes.
};

/// What a model declares about one tensor: its shape and element type.
///
/// A value type.
class QUAVIN_API TensorDescriptor {
public:
    /// No name, an empty shape, DataType::UNDEFINED.
    TensorDescriptor();
    /// No name.
    TensorDescriptor(const TensorShape& shape, DataType tensorType);
    /// @param name the tensor's name.
    /// @param shape the dimensions; -1 for those not known until run time.
    /// @param variableShape stored but not used: variableShape() examines the shape.
    /// @param tensorType the element type.
    TensorDescriptor(String name, const TensorShape& shape, bool variableShape,
                     DataType tensorType);

    /// A copy of the name.
    String name() const { return name_; }
    /// Whether any dimension is -1.
    bool variableShape() const;
    /// A copy of the shape.
    /// @throws InvalidOperationException if variableShape() is true.
    TensorShape shape() const;
    /// A copy of the shape as declared, variable or not.
    TensorShape declaredShape() const { return shape_; }
    /// The element type.
    DataType tensorType() const { return tensorType_; }

private:
    friend struct internal::DescriptorAccess;

    String name_;
    TensorShape shape_;
    bool variableShape_ = false;
    DataType tensorType_ = DataType::UNDEFINED;
};

/// A typed, shaped, dense block of bytes: a model's input or output.
///
/// Held by `std::shared_ptr`; create a Tensor or BufferWrappedTensor with `std::make_shared`. The
/// concrete class determines where the bytes live and who owns them. Use it from one thread at a
/// time; while a prediction runs, that thread is the engine's. The last pointer to a tensor may be
/// dropped on any thread.
class QUAVIN_API ITensor : public std::enable_shared_from_this<ITensor> {
public:
    ITensor(const ITensor&) = delete;
    ITensor& operator=(const ITensor&) = delete;
    virtual ~ITensor();
    /// A copy of the shape, in elements.
    virtual TensorShape shape() const;
    /// The element type.
    virtual DataType dataType() const;
    /// The size of one element times the product of the dimensions: that of one element for an
    /// empty shape, 0 for an undefined type, negative if one dimension is -1.
    virtual int64 bytes() const;
    /// Changes the tensor's shape. A tensor with memory keeps it as is, so the new shape must have
    /// the same number of bytes; a tensor without memory takes any shape and gets zero-filled
    /// memory for it.
    /// @return SUCCESS; or, with the tensor unchanged, TENSOR_SIZE_MISMATCH, ALLOCATION_FAILED if
    ///         the tensor cannot allocate memory of its own, or FAILURE ("Tensor resizing not
    ///         allowed") for an output of a prediction.
    /// @throws std::bad_alloc if memory runs out or the number of bytes is negative or too large.
    virtual QuavinStatus resize(const TensorShape& newShape);
    /// The first byte, or null if there is no memory; valid while the tensor lives.
    virtual const unsigned char* buffer() const = 0;
    /// The first byte, or null if there is no memory; valid while the tensor lives.
    virtual unsigned char* buffer() = 0;
    /// The distance between neighbours along each dimension, in elements.
    virtual TensorShape stride() const;
    /// Allocates new memory of exactly `byteCount` bytes for the tensor. Called by resize(); not
    /// meant for hosts.
    /// @return whether the tensor has memory afterwards; false if it cannot or will not allocate.
    virtual bool allocate(std::size_t byteCount) = 0;

    /// The strides of a dense tensor whose last dimension varies fastest, in elements.
    static TensorShape getStrideFromShape(const TensorShape& shape);

protected:
    /// An empty shape.
    explicit ITensor(DataType dataType);
    /// The given shape.
    ITensor(DataType dataType, TensorShape shape);

private:
    DataType dataType_;
    TensorShape shape_;
};

/// A tensor that owns its memory, aligned to 64 bytes.
class QUAVIN_API Tensor : public ITensor {
public:
    /// An empty shape and no memory; resize() provides both.
    explicit Tensor(DataType dataType);
    /// Zero-filled memory for `shape`.
    /// @throws std::bad_alloc if memory runs out or the number of bytes is negative or too large.
    Tensor(DataType dataType, TensorShape shape);
    ~Tensor() override;

    const unsigned char* buffer() const override { return buffer_.get(); }
    unsigned char* buffer() override { return buffer_.get(); }
    bool allocate(std::size_t byteCount) override;

private:
    struct AlignedDelete {
        QUAVIN_API void operator()(unsigned char* bytes) const noexcept;
    };

    std::unique_ptr<unsigned char[], AlignedDelete> buffer_;
};

/// A tensor over the host's memory, which it neither owns nor frees.
///
/// The memory must stay alive and in place while the tensor lives.
class QUAVIN_API BufferWrappedTensor : public ITensor {
public:
    /// An empty shape and no memory.
    explicit BufferWrappedTensor(DataType dataType);
    /// @param dataType the element type.
    /// @param shape the dimensions.
    /// @param buffer the memory; null creates a tensor without memory, of any shape.
    /// @param bufferSize bytes at `buffer`. More than the shape needs is refused; less is accepted
    ///        at the host's own risk.
    /// @throws InvalidArgumentsException if there is memory but the shape is empty, or if the
    ///         memory is larger than the shape needs.
    BufferWrappedTensor(DataType dataType, TensorShape shape, unsigned char* buffer,
                        std::size_t bufferSize);
    ~BufferWrappedTensor() override;

    const unsigned char* buffer() const override { return buffer_; }
    unsigned char* buffer() override { return buffer_; }
    /// Always false: the memory is the host's.
    bool allocate(std::size_t byteCount) override;

private:
    unsigned char* buffer_ = nullptr;
};

}  // namespace VelmoraQuavin
