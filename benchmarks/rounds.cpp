#include "rounds.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace benchmark {
namespace {

double quantile(std::vector<double> values, double share) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(
        std::lround(share * static_cast<double>(values.size() - 1)))];
}

}  // namespace

double timeOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void compare(const std::string& title, const std::vector<Contestant>& contestants, int rounds) {
    const std::size_t count = contestants.size();
    std::vector<std::vector<double>> times(count);
    for (int round = -1; round < rounds; ++round) {
        for (std::size_t turn = 0; turn < count; ++turn) {
            const std::size_t index = (turn + static_cast<std::size_t>(round + 1)) % count;
            const double seconds = contestants[index].measure();
            if (round >= 0) {
                times[index].push_back(seconds);
            }
        }
    }
    std::printf("%s (%d rounds)\n", title.c_str(), rounds);
    for (std::size_t index = 0; index < count; ++index) {
        std::printf("  %-34s %12.2f us", contestants[index].name.c_str(),
                    1e6 * quantile(times[index], 0.5));
        if (index > 0) {
            std::vector<double> ratios;
            ratios.reserve(times[0].size());
            for (std::size_t round = 0; round < times[0].size(); ++round) {
                ratios.push_back(times[index][round] / times[0][round]);
            }
            std::printf("   %.3fx  [%.3f .. %.3f]", quantile(ratios, 0.5), quantile(ratios, 0.25),
                        quantile(ratios, 0.75));
        }
        std::printf("\n");
    }
    static_cast<void>(std::fflush(stdout));
}

}  // namespace benchmark
