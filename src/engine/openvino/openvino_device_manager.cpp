#include "quavin/device.h"

namespace VelmoraQuavin {

OpenVinoDeviceManager::OpenVinoDeviceManager() {
    OpenVinoDeviceManager::refresh();
}

OpenVinoDeviceManager::~OpenVinoDeviceManager() = default;

QuavinStatus OpenVinoDeviceManager::refresh() {
    if (devices_.empty()) {
        Device cpu;
        cpu.name = "CPU";
        // Not Openvino: the entry is for listing, and is not one that the loader takes.
        cpu.engineType = QuavinModelType::MockML;
        devices_.push_back(cpu);
    }
    return {SUCCESS, ""};
}

}  // namespace VelmoraQuavin
