#include "quavin/device.h"

namespace VelmoraQuavin {

OpenVinoDeviceManager::OpenVinoDeviceManager() {
    static_cast<void>(OpenVinoDeviceManager::refresh());  // always succeeds
}

OpenVinoDeviceManager::~OpenVinoDeviceManager() = default;

QuavinStatus OpenVinoDeviceManager::refresh() {
    if (devices_.empty()) {
        Device cpu;
        cpu.name = "CPU";
        // Not Openvino: the entry is only for listing, and the loader must not accept it.
        cpu.engineType = QuavinModelType::MockML;
        devices_.push_back(cpu);
    }
    return {SUCCESS, ""};
}

}  // namespace VelmoraQuavin
