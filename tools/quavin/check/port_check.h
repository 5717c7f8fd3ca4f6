#pragma once

#include <string>

#include "tools/quavin/check/finding.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {

enum class PortKind { kInput, kOutput };

/// "input \"image\"".
std::string portName(PortKind kind, const VelmoraQuavin::ModelFeatureDescriptor& port);

/// Compares a manifest's declarations with its network: names, types and shapes.
void comparePorts(PortKind kind, const Descriptors& declared, const Descriptors& real,
                  Findings& findings);

}  // namespace quavin_tool
