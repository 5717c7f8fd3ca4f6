#include "tools/quavin/commands/timings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <utility>

#include "tools/quavin/cli/printing.h"

namespace quavin_tool {
namespace {

constexpr std::size_t kMostBars = 12;
// 80 columns together with both times and the count.
constexpr std::size_t kLongestBar = 40;
constexpr double kUsual = 0.99;

}  // namespace

Timings::Timings(std::vector<double> times)
    : sorted_(std::move(times)), sum_(std::accumulate(sorted_.begin(), sorted_.end(), 0.0)) {
    std::sort(sorted_.begin(), sorted_.end());
}

double Timings::percentile(double share) const {
    const double rank = std::ceil(share * static_cast<double>(sorted_.size()));
    return sorted_[static_cast<std::size_t>(std::max(rank, 1.0)) - 1];
}

std::vector<Timings::Bar> Timings::histogram() const {
    const double low = minimum();
    const double high = percentile(kUsual);
    if (high <= low) {
        return {{low, maximum(), count()}};
    }
    const auto wanted =
        static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(sorted_.size()))));
    const std::size_t size = std::min(wanted, kMostBars);
    const double width = (high - low) / static_cast<double>(size);
    std::vector<Bar> bars;
    for (std::size_t i = 0; i < size; ++i) {
        const double from = i == 0 ? low : bars.back().to;
        bars.push_back({from, i + 1 == size ? high : low + width * static_cast<double>(i + 1), 0});
    }
    if (maximum() > high) {
        bars.push_back({high, maximum(), 0});
    }
    auto bar = bars.begin();
    for (const double time : sorted_) {
        while (time > bar->to) {
            ++bar;
        }
        ++bar->count;
    }
    return bars;
}

std::string timeText(double seconds) {
    constexpr std::array<const char*, 3> kUnits{"s", "ms", "us"};
    std::size_t unit = 0;
    while (seconds < 1 && unit + 1 < kUnits.size()) {
        seconds *= 1000;
        ++unit;
    }
    std::array<char, 32> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), "%.2f %s", seconds, kUnits.at(unit)));
    return text.data();
}

std::string histogramText(const std::vector<Timings::Bar>& bars) {
    std::uint64_t most = 1;
    for (const Timings::Bar& bar : bars) {
        most = std::max(most, bar.count);
    }
    std::vector<std::vector<std::string>> rows;
    for (const Timings::Bar& bar : bars) {
        const double share = static_cast<double>(bar.count) / static_cast<double>(most);
        // Rounded up, so that any count is visible.
        const auto length = static_cast<std::size_t>(std::ceil(share * kLongestBar));
        rows.push_back({timeText(bar.from), "to " + timeText(bar.to), std::to_string(bar.count),
                        std::string(length, '#')});
    }
    return table(rows);
}

}  // namespace quavin_tool
