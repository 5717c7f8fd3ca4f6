#pragma once

#include "engine/openvino/quavin_openvino.h"

namespace VelmoraQuavin::testing {

/// The OpenVINO model with its hooks accessible to tests.
class OpenModel : public QuavinOpenVino {
public:
    using QuavinOpenVino::loadImpl;
    using QuavinOpenVino::prepareImpl;
    using QuavinOpenVino::QuavinOpenVino;
    using QuavinOpenVino::unloadImpl;
};

}  // namespace VelmoraQuavin::testing
