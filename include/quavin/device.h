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

/// A compute device. Only its engine type is read by this build, which always infers on "CPU".
///
/// A value type. To load a model, leave it as it is or set #engineType to
/// QuavinModelType::Openvino.
struct Device {
    String name;                                              ///< A name for people.
    QuavinModelType engineType = QuavinModelType::Undefined;  ///< Undefined: no preference.
    std::uint64_t number1 = 0;                                ///< Not used.
    std::uint64_t number2 = 0;                                ///< Not used.
    std::uint32_t number3 = 0;                                ///< Not used.
    String description;                                       ///< Not used.
    bool flag1 = false;                                       ///< Not used.
    bool flag2 = false;                                       ///< Not used.
};

/// Lists the devices of one engine. One thread at a time.
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

/// The devices of the OpenVINO engine: one "CPU".
///
/// Its engine type is QuavinModelType::MockML, so that QuavinClient::getModel refuses it: make a
/// Device of your own to load a model.
class QUAVIN_API OpenVinoDeviceManager : public DeviceManager {
public:
    /// Fills the list.
    OpenVinoDeviceManager();
    ~OpenVinoDeviceManager() override;
    std::vector<Device> getDevices() const override { return devices_; }
    /// Adds the device where the list is empty; always SUCCESS.
    QuavinStatus refresh() override;

private:
    std::vector<Device> devices_;
};

}  // namespace VelmoraQuavin
