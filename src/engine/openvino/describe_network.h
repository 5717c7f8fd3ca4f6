#pragma once

#include "engine/engine.h"

namespace VelmoraQuavin::internal {

/// Reads a network and describes its ports, sorted by name. Element types that predictions do not
/// support are shown as they are, as far as DataType includes them.
/// @throws FileException if the network cannot be read.
/// @throws SignatureException if a component is not what was signed.
NetworkPorts describeOpenVinoNetwork(const NetworkComponents& network);

}  // namespace VelmoraQuavin::internal
