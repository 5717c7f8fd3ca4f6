#pragma once

#include <string>

#include "quavin/files.h"

namespace VelmoraQuavin::testing {

inline std::string textOf(const Filepath& path) {
    return String(path.c_str()).str();
}

}  // namespace VelmoraQuavin::testing
