#pragma once

#include <memory>
#include <utility>

#include "quavin/metadata.h"

namespace VelmoraQuavin {

inline ModelFeatureDescriptor descriptorOf(QuavinFeatureType type, const String& name = "input") {
    return {type, true, name, "", TensorDescriptor(), ImageDescriptor()};
}

inline ModelFeatureDescriptor tensorOf(const TensorShape& shape, const String& name = "input") {
    return {QuavinFeatureType::TENSOR, true, name, "", TensorDescriptor(shape, DataType::FLOAT),
            ImageDescriptor()};
}

inline ModelComponent componentOf(const String& kind, const String& path) {
    ModelComponent component;
    component.name = kind;
    component.path = path;
    return component;
}

/// A target that passes every check: one input, one output, two components.
inline ModelTarget completeTarget() {
    ModelTarget target;
    target.inputs = {tensorOf(TensorShape(1, 2), "in")};
    target.outputs = {tensorOf(TensorShape(1, 3), "out")};
    target.inputNames = {"in"};
    target.outputNames = {"out"};
    target.components = {componentOf("file", "net.xml"), componentOf("file", "net.bin")};
    return target;
}

/// Metadata with one target.
inline std::shared_ptr<ModelMetadata> metadataOf(ModelTarget target,
                                                 QuavinModelType type = QuavinModelType::Openvino) {
    auto metadata = std::make_shared<ModelMetadata>();
    metadata->getTargets().emplace(type, std::move(target));
    return metadata;
}

}  // namespace VelmoraQuavin
