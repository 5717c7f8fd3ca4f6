// The entry to the devices.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "ie/executable_network.hpp"
#include "ie/network.hpp"
#include "ie/parameter.hpp"

namespace InferenceEngine {

/** Loads networks on devices. What it loaded may outlive it. Copies share the devices. */
class Core {
public:
    /**
     * @param configFile a file that lists the devices; the runtime's own list for an empty name
     * @throws details::InferenceEngineException if the runtime can't start
     */
    explicit Core(const std::string& configFile = {});

    /**
     * Loads the network with the precisions that its inputs and outputs have at this moment.
     *
     * @throws the exception of the runtime's status, with its text
     */
    ExecutableNetwork LoadNetwork(CNNNetwork network, const std::string& device,
                                  const std::map<std::string, std::string>& config = {});

    /**
     * A configuration value of a device, as networks are loaded with it.
     *
     * @throws the exception of the runtime's status, for a device or value that is not known
     */
    Parameter GetConfig(const std::string& device, const std::string& name) const;

    /** A fact about a device.
     *  @throws as GetConfig does */
    Parameter GetMetric(const std::string& device, const std::string& name) const;

private:
    class Impl;
    std::shared_ptr<Impl> impl_;
};

}  // namespace InferenceEngine
