// Compiled networks as bytes.
//
// An exported network is a port section (port_section.hpp) and then what the runtime exports, which
// tells neither how the interface names the ports nor which of them it shows.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "handles.hpp"
#include "loaded_network.hpp"

namespace InferenceEngine::runtime {

/** @throws Failure if the runtime can't export the model or the stream can't be written */
void exportNetwork(const ov_compiled_model_t& model, const std::vector<LoadedPort>& ports,
                   std::ostream& stream);

/** Writes what the runtime exported before.
 *  @throws Failure if the stream can't be written */
void writeNetwork(const std::vector<LoadedPort>& ports, std::string_view blob,
                  std::ostream& stream);

/**
 * Imports the rest of the stream, with the settings of the core.
 *
 * @throws Failure, with the status NETWORK_NOT_READ if there is no port section or it is damaged
 */
std::shared_ptr<LoadedNetwork> importNetwork(const ov_core_t& core, const std::string& device,
                                             std::istream& stream);

}  // namespace InferenceEngine::runtime
