#include "engine/openvino/make_openvino_model.h"

#include "engine/openvino/quavin_openvino.h"

namespace VelmoraQuavin::internal {

std::shared_ptr<QuavinModel> makeOpenVinoModel(const String& name, const Device& device) {
    return std::make_shared<QuavinOpenVino>(name, device);
}

}  // namespace VelmoraQuavin::internal
