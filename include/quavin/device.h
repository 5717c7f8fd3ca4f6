#pragma once

/// @file
/// Compute devices.

#include <cstdint>
#include <vector>

#include "quavin/export.h"
#include "quavin/metadata.h"
#include "quavin/status.h"
#include "quavin/text.h"

namespace VelmoraQuavin {

/// A compute device. This build reads only its engine type and always runs inference on "CPU".
///
/// A value type. To load a model, keep the defaults or set #engineType to
/// QuavinModelType::Openvino.
struct Device {
    String name;                                              ///< Display name.
    QuavinModelType engineType = QuavinModelType::Undefined;  ///< Undefined: no preference.
    std::uint64_t number1 = 0;                                ///< Not used.
    std::uint64_t number2 = 0;                                ///< Not used.
    std::uint32_t number3 = 0;                                ///< Not used.
    String description;                                       ///< Not used.
    bool flag1 = false;                                       ///< Not used.
    bool flag2 = false;                                       ///< Not used.
};

/// Lists the devices of one engine. Use it from one thread at a time.
class QUAVIN_API DeviceManager {
public:
    DeviceManager() = default;
    DeviceManager(const DeviceManager&) = delete;
    DeviceManager& operator=(const DeviceManager&) = delete;
    virtual ~DeviceManager();
    /// A copy of the list.
    virtual std::vector<Device> getDevices() const = 0;
    /// Fills the list.
    virtual QuavinStatus refresh() = 0;
};

/// The devices of the OpenVINO engine: a single "CPU".
///
/// The device's engine type is QuavinModelType::MockML, so QuavinClient::getModel refuses it:
/// create your own Device to load a model.
class QUAVIN_API OpenVinoDeviceManager : public DeviceManager {
public:
    /// Fills the list.
    OpenVinoDeviceManager();
    ~OpenVinoDeviceManager() override;
    std::vector<Device> getDevices() const override { return devices_; }
    /// Adds the device if the list is empty; always returns SUCCESS.
    QuavinStatus refresh() override;

private:
    std::vector<Device> devices_;
};

}  // namespace VelmoraQuavin
