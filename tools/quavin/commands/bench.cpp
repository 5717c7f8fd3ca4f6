#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "platform/process.h"
#include "quavin/engine_info.h"
#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/engine_options.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/commands/timings.h"
#include "tools/quavin/io/input_files.h"
#include "tools/quavin/io/require.h"
#include "tools/quavin/package/key.h"
#include "tools/quavin/package/opened_package.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {
namespace {

struct BenchOptions {
    std::string package;
    std::vector<std::string> inputs;
    bool raw = false;
    Casts casts = Casts::kRefused;
    double seconds = 3;
    std::uint64_t iterations = 0;  // 0: as many as fit in the time
    std::uint64_t warmUp = 0;
    KeyOptions key;
    VelmoraQuavin::EngineOptions engine;
    OutputOptions output;
};

struct Report {
    double load;
    double first;
    Timings predictions;
    VelmoraQuavin::EngineInfo engine;
};

// The time of each one is kept in memory.
constexpr std::uint64_t kMostPredictions = 10'000'000;

using Clock = std::chrono::steady_clock;

// CLI::Range accepts "nan".
std::string isNumber(const std::string& text) {
    return std::isfinite(std::strtod(text.c_str(), nullptr)) ? "" : text + " is not a number";
}

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

class Bench {
public:
    explicit Bench(const BenchOptions& options)
        : options_(options), files_(parseInputs(options.inputs)) {}

    Report run() {
        const std::unique_ptr<Key> key = readKey(options_.key);
        const double load = this->load(OpenedPackage(options_.package, bytesOf(key.get())));
        inputs_ = readInputs(*model_, files_, options_.raw, MissingInputs::kZeros, options_.casts);
        const double first = predictOnce();
        for (std::uint64_t i = 0; i < options_.warmUp; ++i) {
            predictOnce();
        }
        VelmoraQuavin::EngineInfo engine;
        require(model_->getEngineInfo(engine));
        return {load, first, Timings(predictAll()), engine};
    }

private:
    // An archive is released afterwards, as hosts do.
    double load(const OpenedPackage& package) {
        const Clock::time_point start = Clock::now();
        model_ = package.load(options_.engine);
        return secondsSince(start);
    }

    double predictOnce() {
        const Clock::time_point start = Clock::now();
        predict(*model_, inputs_);
        return secondsSince(start);
    }

    std::vector<double> predictAll() {
        std::vector<double> times;
        ProgressBar progress("Predicting", options_.output);
        const Clock::time_point begin = Clock::now();
        for (double done = 0; done < 1 && times.size() < kMostPredictions;) {
            times.push_back(predictOnce());
            done = options_.iterations == 0 ? secondsSince(begin) / options_.seconds
                                            : static_cast<double>(times.size()) /
                                                  static_cast<double>(options_.iterations);
            progress.show(done);
        }
        return times;
    }

    const BenchOptions& options_;
    InputFiles files_;
    std::shared_ptr<VelmoraQuavin::QuavinModel> model_;
    Features inputs_;
};

void print(const Report& report) {
    const Timings& predictions = report.predictions;
    std::cout << table({{"load", timeText(report.load)},
                        {"first prediction", timeText(report.first)},
                        {"minimum", timeText(predictions.minimum())},
                        {"mean", timeText(predictions.mean())},
                        {"median", timeText(predictions.percentile(0.5))},
                        {"p90", timeText(predictions.percentile(0.9))},
                        {"p99", timeText(predictions.percentile(0.99))},
                        {"maximum", timeText(predictions.maximum())},
                        {"predictions", std::to_string(predictions.count()) + " in " +
                                            timeText(predictions.sum())},
                        {"per second", std::to_string(std::llround(1 / predictions.mean()))},
                        {"precision", printable(report.engine.precision)},
                        {"threads", std::to_string(report.engine.threads)},
                        {"streams", std::to_string(report.engine.streams)},
                        {"peak memory",
                         readableSize(VelmoraQuavin::internal::platform::peakResidentMemory())}})
              << '\n'
              << histogramText(predictions.histogram());
}

void printJson(const Report& report) {
    const Timings& predictions = report.predictions;
    JsonOutput json;
    json.beginObject();
    json.member("loadSeconds", report.load);
    json.member("firstPredictionSeconds", report.first);
    json.member("minimumSeconds", predictions.minimum());
    json.member("meanSeconds", predictions.mean());
    json.member("medianSeconds", predictions.percentile(0.5));
    json.member("p90Seconds", predictions.percentile(0.9));
    json.member("p99Seconds", predictions.percentile(0.99));
    json.member("maximumSeconds", predictions.maximum());
    json.member("predictions", predictions.count());
    json.member("elapsedSeconds", predictions.sum());
    json.member("predictionsPerSecond", 1 / predictions.mean());
    json.member("precision", report.engine.precision);
    json.member("threads", report.engine.threads);
    json.member("streams", report.engine.streams);
    json.member("peakResidentBytes", VelmoraQuavin::internal::platform::peakResidentMemory());
    json.beginArray("histogram");
    for (const Timings::Bar& bar : predictions.histogram()) {
        json.beginObject();
        json.member("fromSeconds", bar.from);
        json.member("toSeconds", bar.to);
        json.member("predictions", bar.count);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    std::cout << json.text() << '\n';
}

void bench(const BenchOptions& options) {
    const Report report = Bench(options).run();
    options.output.json ? printJson(report) : print(report);
}

}  // namespace

void addBenchCommand(CLI::App& app) {
    auto options = std::make_shared<BenchOptions>();
    CLI::App* const command =
        app.add_subcommand("bench", "Measures how long loading and predicting take.");
    addPackageArgument(*command, options->package);
    addInputOption(*command, options->inputs)
        ->description("The file for an input; inputs without a file are zeros");
    CLI::Option* const raw = addRawOption(*command, options->raw);
    addCastOption(*command, options->casts)->excludes(raw);
    CLI::Option* const seconds =
        command->add_option("-s,--seconds", options->seconds, "How many seconds to predict")
            ->type_name("NUMBER")
            ->check((CLI::Range(0.01, 86400.0) & CLI::Validator(isNumber, "")).description(""))
            ->capture_default_str();
    command->add_option("-n,--iterations", options->iterations, "How many times to predict instead")
        ->type_name("NUMBER")
        ->check(CLI::Range(std::uint64_t{1}, kMostPredictions).description(""))
        ->excludes(seconds);
    command
        ->add_option("-w,--warm-up", options->warmUp,
                     "How many predictions to run after the first before counting")
        ->type_name("NUMBER")
        ->check(CLI::Range(std::uint64_t{0}, kMostPredictions).description(""))
        ->capture_default_str();
    addKeyOptions(*command, options->key);
    addEngineOptions(*command, options->engine);
    addOutputOptions(*command, options->output);
    command->callback([options] { bench(*options); });
}

}  // namespace quavin_tool
