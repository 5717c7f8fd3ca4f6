#include "quavin/device.h"

namespace VelmoraQuavin {

DeviceManager::~DeviceManager() = default;

}  // namespace VelmoraQuavin
