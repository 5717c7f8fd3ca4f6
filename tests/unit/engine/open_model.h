#pragma once

#include "engine/openvino/quavin_openvino.h"

namespace VelmoraQuavin::testing {

/// The OpenVINO model with its hooks accessible to tests.
class OpenModel : public QuavinOpenVino {
public:
    OpenModel(const String& name, const Device& device, const EngineOptions& options = {})
        : QuavinOpenVino(name, device, options) {}

    using QuavinOpenVino::loadImpl;
    using QuavinOpenVino::prepareImpl;
    using QuavinOpenVino::unloadImpl;
};

}  // namespace VelmoraQuavin::testing
