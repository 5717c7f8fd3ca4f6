// The entry point to the devices.
#pragma once

#include <iosfwd>
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
     * Loads a network that ExecutableNetwork::Export wrote, from the rest of the stream. The
     * network's blob is not checked for damage: import only what is known to be as it was written.
     *
     * The device keeps reading from the memory of an imported network. It is a copy of what the
     * stream held, unless the stream's buffer can be kept alive: a class derived from both
     * std::streambuf and std::enable_shared_from_this<std::streambuf>, owned by a shared pointer,
     * that has everything in its get area and whose showmanyc() says so by returning -1. Such a
     * buffer is shared by the network and its requests. Its memory must not change.
     *
     * @param config as for LoadNetwork; settings that a network was exported with are not kept
     * @throws the exception for the status, with a text: NetworkNotRead for anything that Export
     * did not write, and those of LoadNetwork
     */
    ExecutableNetwork ImportNetwork(std::istream& networkModel, const std::string& deviceName,
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
