#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quavin_tool {

/// How long things took that were done again and again, in seconds.
class Timings {
public:
    /// @param times at least one.
    explicit Timings(std::vector<double> times);

    std::uint64_t count() const { return sorted_.size(); }
    double minimum() const { return sorted_.front(); }
    double maximum() const { return sorted_.back(); }
    double sum() const { return sum_; }
    double mean() const { return sum_ / static_cast<double>(sorted_.size()); }
    /// The smallest time that a share of all did not exceed.
    double percentile(double share) const;

    /// How many took from one time to the next. The last bar may begin at the 99th percentile and
    /// reach as far as the slowest, so that a few slow ones do not hide what the others are like.
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
