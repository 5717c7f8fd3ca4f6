#pragma once

#include <string>
#include <vector>

#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// The identity of a model, as stated in its manifest.
struct Identity {
    std::string id;
    std::string name;
    std::string author;
    std::string description;
    std::string sdkVersion;
    int version = 1;
};

/// The text of "manifest.json" for a network of the OpenVINO engine.
/// @param files the file names of the network and its weights.
/// @param secured whether both are encrypted.
std::string manifestText(const Identity& identity, const std::vector<std::string>& files,
                         bool secured, const Descriptors& inputs, const Descriptors& outputs);

}  // namespace quavin_tool
