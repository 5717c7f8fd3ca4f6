#include <utility>

#include "quavin/feature.h"

namespace VelmoraQuavin {

QuavinFeatureBool::QuavinFeatureBool(ModelFeatureDescriptor descriptor)
    : QuavinFeatureBool(std::move(descriptor), false) {}
QuavinFeatureBool::QuavinFeatureBool(ModelFeatureDescriptor descriptor, bool value)
    : QuavinFeature(std::move(descriptor)), value_(value) {}
QuavinFeatureBool::~QuavinFeatureBool() = default;

QuavinFeatureUInt8::QuavinFeatureUInt8(const ModelFeatureDescriptor& descriptor)
    : QuavinFeatureUInt8(descriptor, 0) {}
QuavinFeatureUInt8::QuavinFeatureUInt8(const ModelFeatureDescriptor& descriptor,
                                       unsigned char value)
    : QuavinFeature(descriptor), value_(value) {}
QuavinFeatureUInt8::~QuavinFeatureUInt8() = default;

QuavinFeatureInt64::QuavinFeatureInt64(ModelFeatureDescriptor descriptor)
    : QuavinFeatureInt64(std::move(descriptor), 0) {}
QuavinFeatureInt64::QuavinFeatureInt64(ModelFeatureDescriptor descriptor, int64 value)
    : QuavinFeature(std::move(descriptor)), value_(value) {}
QuavinFeatureInt64::~QuavinFeatureInt64() = default;

QuavinFeatureDouble::QuavinFeatureDouble(ModelFeatureDescriptor descriptor)
    : QuavinFeatureDouble(std::move(descriptor), 0.0) {}
QuavinFeatureDouble::QuavinFeatureDouble(ModelFeatureDescriptor descriptor, double value)
    : QuavinFeature(std::move(descriptor)), value_(value) {}
QuavinFeatureDouble::~QuavinFeatureDouble() = default;

QuavinFeatureString::QuavinFeatureString(ModelFeatureDescriptor descriptor)
    : QuavinFeatureString(std::move(descriptor), String()) {}
QuavinFeatureString::QuavinFeatureString(ModelFeatureDescriptor descriptor, String value)
    : QuavinFeature(std::move(descriptor)), value_(std::move(value)) {}
QuavinFeatureString::~QuavinFeatureString() = default;

}  // namespace VelmoraQuavin
