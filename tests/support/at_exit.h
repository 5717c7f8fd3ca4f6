#pragma once

#include <cstdlib>
#include <stdexcept>

namespace VelmoraQuavin::testing {

/// Has a function called when the process exits, before what was registered or created earlier is
/// destroyed.
/// @throws std::runtime_error if the system takes no more functions.
inline void callAtExit(void (*function)()) {
    if (std::atexit(function) != 0) {
        throw std::runtime_error("no more functions can be registered for the exit");
    }
}

}  // namespace VelmoraQuavin::testing
