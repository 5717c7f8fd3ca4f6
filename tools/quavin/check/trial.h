#pragma once

#include <string>
#include <string_view>

#include "tools/quavin/package/key.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// The result of trying a network in a separate process, since some networks crash the engine.
struct Trial {
    VelmoraQuavin::QuavinStatus status;  ///< The library's status, unless it crashed.
    std::string crash;                   ///< How the process crashed, as a message.
    Descriptors inputs;                  ///< Of the network, if it was described.
    Descriptors outputs;

    bool ok() const { return crash.empty() && status.ok(); }
};

/// Describes the network of two files.
/// @param weights empty for none.
Trial tryToDescribe(const std::string& network, const std::string& weights);

/// Describes the network of a package, which is a directory or an archive.
/// @param key the key of a secured package, or null.
Trial tryToDescribe(const std::string& package, const Key* key);

/// Loads a package and predicts once with zeros, unless an input's shape is left to the host.
/// @param key the key of a secured package, or null.
/// @param options how to compute.
Trial tryToPredict(const std::string& package, const Key* key,
                   const VelmoraQuavin::EngineOptions& options = {});

/// The work done in that process.
std::string answerTrial(std::string_view request);

}  // namespace quavin_tool
