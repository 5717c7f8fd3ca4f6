#pragma once

#include "quavin/feature.h"

namespace VelmoraQuavin::internal {

/// Reads descriptor fields that have no accessor, or only one that copies.
struct DescriptorAccess {
    static const String& name(const ModelFeatureDescriptor& descriptor) { return descriptor.name_; }
    /// For engines that take images, and for tests: no other code needs it yet.
    static const ImageDescriptor& image(const ModelFeatureDescriptor& descriptor) {
        return descriptor.imageDescriptor_;
    }
    /// The shape, even if it is variable.
    static const TensorShape& shape(const TensorDescriptor& descriptor) {
        return descriptor.shape_;
    }
};

}  // namespace VelmoraQuavin::internal
