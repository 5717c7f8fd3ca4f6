// A port of a compiled model, as the interface shows it.
#pragma once

#include <cstddef>
#include <string>

#include "element_type.hpp"
#include "ie/common.hpp"
#include "ie/precision.hpp"

namespace InferenceEngine::runtime {

struct LoadedPort {
    std::string name;
    Direction direction = Direction::Input;
    // Its position among the inputs or outputs of the compiled model.
    std::size_t index = 0;
    Precision precision;
    SizeVector dims;
};

}  // namespace InferenceEngine::runtime
