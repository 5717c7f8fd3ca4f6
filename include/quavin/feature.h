#pragma once

/// @file
/// A model's inputs and outputs: feature descriptors, and the features that hold values.

#include <cstdint>
#include <memory>

#include "quavin/export.h"
#include "quavin/tensor.h"
#include "quavin/text.h"

namespace VelmoraQuavin {

/// The kind of value that a feature holds. 7 means not set.
enum class QuavinFeatureType : std::int32_t {
    BOOL = 0,    ///< `bool`.
    UINT8 = 1,   ///< `unsigned char`.
    INT64 = 2,   ///< `int64`.
    DOUBLE = 3,  ///< `double`.
    STRING = 4,  ///< String.
    TENSOR = 5,  ///< ITensor.
    IMAGE = 6,   ///< An image; no feature class holds one yet.
};

/// The order of an image's channels. 5 means not set.
enum class QuavinPixelType : std::int32_t {
    ONE = 0,   ///< One channel.
    BGR = 1,   ///< Blue, green, red.
    RGB = 2,   ///< Red, green, blue.
    RGBA = 3,  ///< Red, green, blue, alpha; never read from a manifest.
    BGRA = 4,  ///< Blue, green, red, alpha.
};

/// The size and channel order of an image. A value type.
struct ImageDescriptor {
    std::int32_t height = 0;  ///< Pixels.
    std::int32_t width = 0;   ///< Pixels.
    /// Channel order.
    QuavinPixelType pixelType = static_cast<QuavinPixelType>(5);
};

/// What a model declares about one input or output.
///
/// A value type.
class QUAVIN_API ModelFeatureDescriptor {
public:
    /// Type not set (7); required.
    ModelFeatureDescriptor();
    /// Required.
    explicit ModelFeatureDescriptor(QuavinFeatureType type);
    /// Not required.
    ModelFeatureDescriptor(QuavinFeatureType type, ImageDescriptor imageDescriptor);
    /// Not required.
    ModelFeatureDescriptor(QuavinFeatureType type, TensorDescriptor tensorDescriptor);
    /// Stores everything as given.
    ModelFeatureDescriptor(QuavinFeatureType type, bool required, String name, String description,
                           TensorDescriptor tensorDescriptor, ImageDescriptor imageDescriptor);

    /// A copy of the name.
    String name() const { return name_; }
    /// A copy of the free-text description.
    String description() const { return description_; }
    /// Whether the model needs the feature.
    bool required() const { return required_; }
    /// The kind of value.
    QuavinFeatureType type() const { return type_; }
    /// Shape and element type; meaningful for tensor features. Valid while the descriptor lives.
    const TensorDescriptor& tensorDescriptor() const { return tensorDescriptor_; }

private:
    friend struct internal::DescriptorAccess;

    QuavinFeatureType type_;
    bool required_;
    String name_;
    String description_;
    TensorDescriptor tensorDescriptor_;
    ImageDescriptor imageDescriptor_;
};

/// The name of a feature type; "unknown" for a value without one.
QUAVIN_API String GetQuavinFeatureTypeName(QuavinFeatureType type);
/// The name of a channel order; "unknown" for a value without one.
QUAVIN_API String GetQuavinPixelType(QuavinPixelType type);

/// A video frame. No feature holds one; the type is only declared.
class VideoFrame;

/// One named value that goes into a model or comes out of it.
///
/// Held by `std::shared_ptr`. In this class, every accessor throws an InvalidTypeException that
/// names the requested type and the descriptor's; each class below overrides its own pair.
/// References returned by accessors are valid while the feature lives. Use it from one thread at a
/// time.
class QUAVIN_API QuavinFeature : public std::enable_shared_from_this<QuavinFeature> {
public:
    /// Stores the descriptor; its type is not checked against the class.
    explicit QuavinFeature(ModelFeatureDescriptor descriptor);
    QuavinFeature(const QuavinFeature&) = delete;
    QuavinFeature& operator=(const QuavinFeature&) = delete;
    virtual ~QuavinFeature();

    virtual bool& asBool();                        ///< The value of a QuavinFeatureBool.
    virtual const bool& asBool() const;            ///< The value of a QuavinFeatureBool.
    virtual const unsigned char& asUInt8() const;  ///< The value of a QuavinFeatureUInt8.
    virtual unsigned char& asUInt8();              ///< The value of a QuavinFeatureUInt8.
    virtual const int64& asInt64() const;          ///< The value of a QuavinFeatureInt64.
    virtual int64& asInt64();                      ///< The value of a QuavinFeatureInt64.
    virtual const double& asDouble() const;        ///< The value of a QuavinFeatureDouble.
    virtual double& asDouble();                    ///< The value of a QuavinFeatureDouble.
    virtual const String& asString() const;        ///< The value of a QuavinFeatureString.
    virtual String& asString();                    ///< The value of a QuavinFeatureString.
    virtual std::shared_ptr<const ITensor> asTensor() const;  ///< The tensor, shared; may be null.
    virtual std::shared_ptr<ITensor> asTensor();              ///< The tensor, shared; may be null.
    virtual std::shared_ptr<const VideoFrame> asVideoFrame() const;  ///< Always throws.
    virtual std::shared_ptr<VideoFrame> asVideoFrame();              ///< Always throws.

    /// The descriptor's type.
    QuavinFeatureType type() const { return descriptor_.type(); }
    /// The descriptor; valid while the feature lives.
    const ModelFeatureDescriptor& featureDescriptor() const { return descriptor_; }

private:
    ModelFeatureDescriptor descriptor_;
};

/// A feature that holds a `bool`.
class QUAVIN_API QuavinFeatureBool : public QuavinFeature {
public:
    explicit QuavinFeatureBool(ModelFeatureDescriptor descriptor);     ///< False.
    QuavinFeatureBool(ModelFeatureDescriptor descriptor, bool value);  ///< The given value.
    ~QuavinFeatureBool() override;
    bool& asBool() override { return value_; }
    const bool& asBool() const override { return value_; }

private:
    bool value_;
};

/// A feature that holds an unsigned byte.
class QUAVIN_API QuavinFeatureUInt8 : public QuavinFeature {
public:
    explicit QuavinFeatureUInt8(const ModelFeatureDescriptor& descriptor);  ///< 0.
    QuavinFeatureUInt8(const ModelFeatureDescriptor& descriptor,
                       unsigned char value);  ///< The given value.
    ~QuavinFeatureUInt8() override;
    const unsigned char& asUInt8() const override { return value_; }
    unsigned char& asUInt8() override { return value_; }

private:
    unsigned char value_;
};

/// A feature that holds a signed 64-bit integer.
class QUAVIN_API QuavinFeatureInt64 : public QuavinFeature {
public:
    explicit QuavinFeatureInt64(ModelFeatureDescriptor descriptor);      ///< 0.
    QuavinFeatureInt64(ModelFeatureDescriptor descriptor, int64 value);  ///< The given value.
    ~QuavinFeatureInt64() override;
    const int64& asInt64() const override { return value_; }
    int64& asInt64() override { return value_; }

private:
    int64 value_;
};

/// A feature that holds a `double`.
class QUAVIN_API QuavinFeatureDouble : public QuavinFeature {
public:
    explicit QuavinFeatureDouble(ModelFeatureDescriptor descriptor);       ///< 0.0.
    QuavinFeatureDouble(ModelFeatureDescriptor descriptor, double value);  ///< The given value.
    ~QuavinFeatureDouble() override;
    const double& asDouble() const override { return value_; }
    double& asDouble() override { return value_; }

private:
    double value_;
};

/// A feature that holds a String.
class QUAVIN_API QuavinFeatureString : public QuavinFeature {
public:
    explicit QuavinFeatureString(ModelFeatureDescriptor descriptor);       ///< The empty string.
    QuavinFeatureString(ModelFeatureDescriptor descriptor, String value);  ///< The given value.
    ~QuavinFeatureString() override;
    const String& asString() const override { return value_; }
    String& asString() override { return value_; }

private:
    String value_;
};

/// The interface of a feature that holds a tensor.
class QUAVIN_API IQuavinFeatureTensor : public QuavinFeature {
public:
    explicit IQuavinFeatureTensor(ModelFeatureDescriptor descriptor);  ///< Stores the descriptor.
    ~IQuavinFeatureTensor() override;
    std::shared_ptr<const ITensor> asTensor() const override = 0;
    std::shared_ptr<ITensor> asTensor() override = 0;
};

/// A feature that shares a tensor: writing to the tensor's memory changes the feature.
class QUAVIN_API QuavinFeatureTensor : public IQuavinFeatureTensor {
public:
    /// Creates a zero-filled Tensor of the descriptor's shape and type.
    /// @throws InvalidOperationException if the shape is variable.
    /// @throws std::bad_alloc as Tensor does.
    explicit QuavinFeatureTensor(const ModelFeatureDescriptor& descriptor);
    /// Shares the given tensor, which may be null and is not checked against the descriptor.
    QuavinFeatureTensor(ModelFeatureDescriptor descriptor, std::shared_ptr<ITensor> tensor);
    ~QuavinFeatureTensor() override;
    std::shared_ptr<const ITensor> asTensor() const override { return tensor_; }
    std::shared_ptr<ITensor> asTensor() override { return tensor_; }

private:
    std::shared_ptr<ITensor> tensor_;
};

}  // namespace VelmoraQuavin
