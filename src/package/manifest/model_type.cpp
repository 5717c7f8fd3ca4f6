#include <stdexcept>
#include <unordered_map>

#include "quavin/metadata.h"
#include "text/vocabulary.h"

namespace VelmoraQuavin {

namespace {

String engineKey(QuavinModelType type) {
    return internal::wordFor(internal::kEngines, type, "");
}

}  // namespace

const String EngineKey::WinML = engineKey(QuavinModelType::WinML);
const String EngineKey::CoreML = engineKey(QuavinModelType::CoreML);
const String EngineKey::Tensorflow = "Tensorflow";  // has no type: its targets are never read
const String EngineKey::Openvino = engineKey(QuavinModelType::Openvino);
const String EngineKey::TensorflowLite = engineKey(QuavinModelType::TensorflowLite);
const String EngineKey::MockML = engineKey(QuavinModelType::MockML);

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
        // One standard library's text, thrown explicitly so that it is the same with all of them.
        throw std::out_of_range("invalid unordered_map<K, T> key");
    }
    return name->second;
}

}  // namespace VelmoraQuavin
