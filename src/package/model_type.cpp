#include <stdexcept>
#include <unordered_map>

#include "quavin/metadata.h"

namespace VelmoraQuavin {

const String EngineKey::WinML = "WinML";
const String EngineKey::CoreML = "CoreML";
const String EngineKey::Tensorflow = "Tensorflow";
const String EngineKey::Openvino = "Openvino";
const String EngineKey::TensorflowLite = "TensorflowLite";
const String EngineKey::MockML = "MockML";

const String ComponentKind::File = "file";
const String ComponentKind::MemoryStream = "memory_stream";
const String ComponentKind::SecuredFile = "secured_file";
const String ComponentKind::SecuredTar = "secured_tar";

namespace {

const std::unordered_map<QuavinModelType, String>& displayNames() {
    static const std::unordered_map<QuavinModelType, String> names = {
        {QuavinModelType::Undefined, "Undefined"},
        {QuavinModelType::CoreML, "CoreML"},
        {QuavinModelType::WinML, "WinML"},
        {QuavinModelType::Openvino, "OpenVino"},
        {QuavinModelType::TensorflowLite, "TF-Lite"},
        {QuavinModelType::MockML, "MOCK"},
    };
    return names;
}

}  // namespace

String ModelTypeToName(QuavinModelType type) {
    const auto name = displayNames().find(type);
    if (name == displayNames().end()) {
        // The text of one standard library, thrown here so that it is the same with every library.
        throw std::out_of_range("invalid unordered_map<K, T> key");
    }
    return name->second;
}

}  // namespace VelmoraQuavin
