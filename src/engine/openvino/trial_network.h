#pragma once

#include <string_view>

namespace VelmoraQuavin::internal {

/// y = x + x, for four floats, without weights. Every release of the engine since 2020 reads
/// and compiles it.
inline constexpr std::string_view kTrialNetwork = R"(<?xml version="1.0"?>
<net name="trial" version="10">
  <layers>
    <layer id="0" name="x" type="Parameter" version="opset1">
      <data element_type="f32" shape="1,4"/>
      <output><port id="0" precision="FP32"><dim>1</dim><dim>4</dim></port></output>
    </layer>
    <layer id="1" name="y" type="Add" version="opset1">
      <input>
        <port id="0"><dim>1</dim><dim>4</dim></port>
        <port id="1"><dim>1</dim><dim>4</dim></port>
      </input>
      <output><port id="2" precision="FP32"><dim>1</dim><dim>4</dim></port></output>
    </layer>
    <layer id="2" name="result" type="Result" version="opset1">
      <input><port id="0"><dim>1</dim><dim>4</dim></port></input>
    </layer>
  </layers>
  <edges>
    <edge from-layer="0" from-port="0" to-layer="1" to-port="0"/>
    <edge from-layer="0" from-port="0" to-layer="1" to-port="1"/>
    <edge from-layer="1" from-port="2" to-layer="2" to-port="0"/>
  </edges>
</net>
)";

}  // namespace VelmoraQuavin::internal
