// The entry point to the devices.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "ie/executable_network.hpp"
#include "ie/network.hpp"
#include "ie/parameter.hpp"

namespace InferenceEngine {

/** Loads networks on devices. Loaded networks may outlive it. Copies share the devices. */
class Core {
public:
    /**
     * @param configFile only the empty one, for the runtime's own list of devices, is supported
     * @throws NotImplemented for any other
     * @throws details::InferenceEngineException if the runtime can't start
     */
    explicit Core(const std::string& configFile = {});

    /**
     * Loads the network with the current precisions of its inputs and outputs.
     *
     * @throws the exception for the runtime's status, with its text
     */
    ExecutableNetwork LoadNetwork(CNNNetwork network, const std::string& device,
                                  const std::map<std::string, std::string>& config = {});

    /**
     * A configuration value of a device, as it applies to the networks loaded there.
     *
     * @throws the exception for the runtime's status if the device or value is unknown
     */
    Parameter GetConfig(const std::string& device, const std::string& name) const;

    /** A property of a device.
     *  @throws like GetConfig */
    Parameter GetMetric(const std::string& device, const std::string& name) const;

private:
    class Impl;
    std::shared_ptr<Impl> impl_;
};

}  // namespace InferenceEngine
