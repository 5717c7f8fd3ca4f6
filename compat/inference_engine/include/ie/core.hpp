// The entry to the devices.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "ie/executable_network.hpp"
#include "ie/network.hpp"

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

private:
    class Impl;
    std::shared_ptr<Impl> impl_;
};

}  // namespace InferenceEngine
