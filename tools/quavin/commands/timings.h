#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quavin_tool {

/// The durations of repeated runs, in seconds.
class Timings {
public:
    /// @param times at least one.
    explicit Timings(std::vector<double> times);

    std::uint64_t count() const { return sorted_.size(); }
    double minimum() const { return sorted_.front(); }
    double maximum() const { return sorted_.back(); }
    double sum() const { return sum_; }
    double mean() const { return sum_ / static_cast<double>(sorted_.size()); }
    /// The smallest time that a given share of the runs did not exceed.
    double percentile(double share) const;

    /// The number of runs that took between two times. The last bar may range from the 99th
    /// percentile to the slowest run, so that a few slow runs do not hide the rest.
    struct Bar {
        double from;
        double to;
        std::uint64_t count;
    };
    std::vector<Bar> histogram() const;

private:
    std::vector<double> sorted_;
    double sum_;
};

/// "1.50 ms".
std::string timeText(double seconds);

/// A histogram for a terminal of 80 columns.
std::string histogramText(const std::vector<Timings::Bar>& bars);

}  // namespace quavin_tool
