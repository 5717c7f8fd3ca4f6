#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "command_line.h"
#include "files.h"
#include "key.h"
#include "package.h"
#include "platform/process.h"
#include "printing.h"

namespace quavin_tool {
namespace {

struct Options {
    std::string package;
    double seconds = 3;
    KeyOptions key;
    OutputOptions output;
};

struct Timings {
    double load = 0;
    double first = 0;
    std::vector<double> predictions;  // sorted
    double elapsed = 0;               // the sum of all
};

using Clock = std::chrono::steady_clock;

// "nan" is in every range.
std::string isNumber(const std::string& text) {
    return std::isfinite(std::strtod(text.c_str(), nullptr)) ? "" : text + " is no number";
}

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The smallest time that a share of all predictions did not exceed.
double percentile(const std::vector<double>& sorted, double share) {
    const double rank = std::ceil(share * static_cast<double>(sorted.size()));
    return sorted[static_cast<std::size_t>(std::max(rank, 1.0)) - 1];
}

Timings measure(const Options& options) {
    Timings timings;
    const Metadata metadata = openPackage(options.package, options.key);

    Clock::time_point start = Clock::now();
    const std::shared_ptr<VelmoraQuavin::QuavinModel> model = loadModel(metadata);
    timings.load = secondsSince(start);

    const Features inputs = zeroInputs(*model);
    start = Clock::now();
    predict(*model, inputs);
    timings.first = secondsSince(start);

    ProgressBar progress("Predicting", options.output);
    const Clock::time_point begin = Clock::now();
    do {
        start = Clock::now();
        predict(*model, inputs);
        timings.predictions.push_back(secondsSince(start));
        timings.elapsed += timings.predictions.back();
        progress.show(secondsSince(begin) / options.seconds);
    } while (secondsSince(begin) < options.seconds);
    std::sort(timings.predictions.begin(), timings.predictions.end());
    return timings;
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

void print(const Timings& timings) {
    const std::vector<double>& predictions = timings.predictions;
    const double perSecond = static_cast<double>(predictions.size()) / timings.elapsed;
    std::cout << table(
        {{"load", timeText(timings.load)},
         {"first prediction", timeText(timings.first)},
         {"median", timeText(percentile(predictions, 0.5))},
         {"p90", timeText(percentile(predictions, 0.9))},
         {"p99", timeText(percentile(predictions, 0.99))},
         {"predictions", std::to_string(predictions.size()) + " in " + timeText(timings.elapsed)},
         {"per second", std::to_string(std::llround(perSecond))},
         {"peak memory", readableSize(VelmoraQuavin::internal::platform::peakResidentMemory())}});
}

void printJson(const Timings& timings) {
    const std::vector<double>& predictions = timings.predictions;
    JsonOutput json;
    json.beginObject();
    json.member("loadSeconds", timings.load);
    json.member("firstPredictionSeconds", timings.first);
    json.member("medianSeconds", percentile(predictions, 0.5));
    json.member("p90Seconds", percentile(predictions, 0.9));
    json.member("p99Seconds", percentile(predictions, 0.99));
    json.member("predictions", static_cast<std::uint64_t>(predictions.size()));
    json.member("elapsedSeconds", timings.elapsed);
    json.member("predictionsPerSecond", static_cast<double>(predictions.size()) / timings.elapsed);
    json.member("peakResidentBytes", VelmoraQuavin::internal::platform::peakResidentMemory());
    json.endObject();
    std::cout << json.text() << '\n';
}

void bench(const Options& options) {
    const Timings timings = measure(options);
    options.output.json ? printJson(timings) : print(timings);
}

}  // namespace

void addBenchCommand(CLI::App& app) {
    auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("bench", "Measures how long loading and predicting take.");
    command->add_option("PACKAGE", options->package, "The package's directory")
        ->type_name("DIR")
        ->check(isPath())
        ->required();
    command->add_option("-s,--seconds", options->seconds, "How long to predict")
        ->type_name("NUMBER")
        ->check(CLI::Range(0.01, 86400.0) & CLI::Validator(isNumber, ""))
        ->capture_default_str();
    addKeyOptions(*command, options->key);
    addOutputOptions(*command, options->output);
    command->callback([options] { bench(*options); });
}

}  // namespace quavin_tool
