#pragma once

#include "engine/engine.h"

namespace VelmoraQuavin::internal {

/// Reads a network and describes its ports, in name order. Element types that no tensor of a
/// prediction has are shown as they are, as far as DataType has them.
/// @throws FileException if the network cannot be read.
NetworkPorts describeOpenVinoNetwork(const NetworkComponents& network);

}  // namespace VelmoraQuavin::internal
