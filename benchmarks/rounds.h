#pragma once

#include <functional>
#include <string>
#include <vector>

namespace benchmark {

/// One side of a comparison: does its work once and returns the seconds to count.
struct Contestant {
    std::string name;
    std::function<double()> measure;
};

/// Measures the contestants in turn, each round starting with a different one, after one round
/// that does not count. Prints for each its median and, for all but the first, the median of its
/// ratios to the first within a round, with the quartiles.
///
/// The first is the baseline. Pass it twice to see how far the machine's noise alone moves a ratio.
void compare(const std::string& title, const std::vector<Contestant>& contestants, int rounds);

/// Seconds that `work` takes.
double timeOf(const std::function<void()>& work);

}  // namespace benchmark
