#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// Statistics of an output's elements. Those that are not finite are only counted.
struct Summary {
    double minimum = 0;
    double maximum = 0;
    double mean = 0;
    std::uint64_t indexOfMaximum = 0;
    std::uint64_t notFinite = 0;
};

/// An output of a prediction and the file that it was written to.
struct Output {
    std::string name;
    std::string file;                      ///< Empty if it was not written.
    const VelmoraQuavin::ITensor* tensor;  ///< Owned by the feature.
    Summary summary;
};

/// Summarises outputs, without files.
/// @param features the outputs of a prediction; must outlive the result.
std::vector<Output> summarizeOutputs(const Features& features);

/// Writes every output to a directory, under names that cannot lead outside.
/// @param directory created if it is missing.
/// @param raw whether to write only the elements instead of ".npy" files.
void writeOutputs(std::vector<Output>& outputs, const std::string& directory, bool raw);

/// Prints the summaries, with the files or else the first elements.
void printOutputs(const std::vector<Output>& outputs);
void printOutputsAsJson(const std::vector<Output>& outputs);

}  // namespace quavin_tool
