#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// What an output's elements are like; those that are not finite are counted and left out.
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
    std::string file;                      ///< Empty where it was not written.
    const VelmoraQuavin::ITensor* tensor;  ///< The feature's own.
    Summary summary;
};

/// The outputs as they are, without files.
/// @param features of a prediction; stay alive as long as what is returned.
std::vector<Output> summarizeOutputs(const Features& features);

/// Writes every output into a directory, under names that lead nowhere else.
/// @param directory made where it is missing.
/// @param raw elements alone instead of ".npy" files.
void writeOutputs(std::vector<Output>& outputs, const std::string& directory, bool raw);

/// Prints what the outputs are like, with their files or, without those, their first elements.
void printOutputs(const std::vector<Output>& outputs);
void printOutputsAsJson(const std::vector<Output>& outputs);

}  // namespace quavin_tool
