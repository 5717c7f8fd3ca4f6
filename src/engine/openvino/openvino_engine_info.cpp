#include "engine/openvino/openvino_engine_info.h"

#include <cstdint>
#include <inference_engine.hpp>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "engine/openvino/network_settings.h"

namespace VelmoraQuavin::internal {
namespace {

// Every version of the engine can read and compile this.
constexpr std::string_view kProbe = R"(<?xml version="1.0"?>
<net name="probe" version="10">
  <layers>
    <layer id="0" name="x" type="Parameter" version="opset1">
      <data element_type="f32" shape="1,8"/>
      <output><port id="0" precision="FP32"><dim>1</dim><dim>8</dim></port></output>
    </layer>
    <layer id="1" name="y" type="ReLU" version="opset1">
      <input><port id="0"><dim>1</dim><dim>8</dim></port></input>
      <output><port id="1" precision="FP32"><dim>1</dim><dim>8</dim></port></output>
    </layer>
    <layer id="2" name="result" type="Result" version="opset1">
      <input><port id="0"><dim>1</dim><dim>8</dim></port></input>
    </layer>
  </layers>
  <edges>
    <edge from-layer="0" from-port="0" to-layer="1" to-port="0"/>
    <edge from-layer="1" from-port="1" to-layer="2" to-port="0"/>
  </edges>
</net>
)";

std::shared_ptr<InferenceEngine::ICNNNetReader> readProbe() {
    using namespace InferenceEngine;
    auto reader = details::shared_from_irelease(CreateCNNNetReader());
    if (reader == nullptr) {
        throw std::bad_alloc();
    }
    const auto noWeights = make_shared_blob<std::uint8_t>(TensorDesc(Precision::U8, {0}, ANY));
    noWeights->allocate();
    ResponseDesc response;
    StatusCode status = reader->ReadNetwork(kProbe.data(), kProbe.size(), &response);
    if (status == OK) {
        status = reader->SetWeights(noWeights, &response);
    }
    if (status != OK) {
        details::extract_exception(status, response.msg);
    }
    return reader;
}

}  // namespace

// A device's own settings leave the choice open: only a compiled network shows what was chosen.
EngineInfo openVinoEngineInfo() {
    InferenceEngine::Core core{std::string()};
    const InferenceEngine::CNNNetwork probe(readProbe());
    const NetworkSettings settings = settingsOf(core.LoadNetwork(probe, kEngineDevice, {}));
    return makeEngineInfo(core, kEngineDevice, settings);
}

}  // namespace VelmoraQuavin::internal
