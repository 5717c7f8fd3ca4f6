#pragma once

#include <string>

namespace benchmark {

/// Prints what the first prediction adds to the process's anonymous memory, and then, on average,
/// each of `count` clones that predicts once. Earlier work in the process may hide some of it.
/// @param side "clone"; "raw" for further inference requests made by hand instead of clones.
/// @param folder a plain package as models/make_mobilenet.py writes it.
/// @throws std::exception if loading or predicting fails.
void printCloneMemory(const std::string& side, const std::string& folder, int count);

}  // namespace benchmark
