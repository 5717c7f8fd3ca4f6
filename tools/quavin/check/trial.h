#pragma once

#include <string>
#include <string_view>

#include "tools/quavin/package/key.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// What came of giving a network to the engine in a process of its own: some networks crash it.
struct Trial {
    VelmoraQuavin::QuavinStatus status;  ///< What the library says, unless it crashed.
    std::string crash;                   ///< How the process ended instead, for people.
    Descriptors inputs;                  ///< Of the network, where it was described.
    Descriptors outputs;

    bool ok() const { return crash.empty() && status.ok(); }
};

/// Describes the network of two files.
/// @param weights empty for none.
Trial tryToDescribe(const std::string& network, const std::string& weights);

/// Describes the network of a package.
/// @param key of a secured package, or null.
Trial tryToDescribe(const std::string& package, const Key* key);

/// Loads a package and predicts once with zeros, unless an input's shape is left to the host.
/// @param key of a secured package, or null.
Trial tryToPredict(const std::string& package, const Key* key);

/// The work of that process.
std::string answerTrial(std::string_view request);

}  // namespace quavin_tool
