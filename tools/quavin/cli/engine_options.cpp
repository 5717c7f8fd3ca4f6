#include "tools/quavin/cli/engine_options.h"

#include <CLI/CLI.hpp>
#include <string>

namespace quavin_tool {

using VelmoraQuavin::EngineOptions;

void addEngineOptions(CLI::App& command, EngineOptions& options) {
    command
        .add_option("--threads", options.threads,
                    "How many threads to compute on; 0 leaves the choice to the engine")
        ->type_name("NUMBER")
        ->check(CLI::Range(0, EngineOptions::kMostThreads).description(""));
    command
        .add_option_function<std::string>(
            "--precision",
            [&options](const std::string& word) {
                options.precision = word == "fastest" ? EngineOptions::Precision::Fastest
                                                      : EngineOptions::Precision::Single;
            },
            "single (the default), or fastest: whatever the processor computes fastest with")
        ->type_name("single|fastest")
        ->check(CLI::IsMember({"single", "fastest"}).description(""));
    command
        .add_option_function<std::string>(
            "--hint",
            [&options](const std::string& word) {
                options.hint = word == "throughput" ? EngineOptions::Hint::Throughput
                                                    : EngineOptions::Hint::Latency;
            },
            "latency (the default), or throughput: for predictions at the same time")
        ->type_name("latency|throughput")
        ->check(CLI::IsMember({"latency", "throughput"}).description(""));
    command
        .add_option_function<std::string>(
            "--cache",
            [&options](const std::string& directory) { options.cacheDirectory = directory; },
            "Keep compiled networks in this directory, for faster loads")
        ->type_name("DIRECTORY");
    command.add_flag("--map-weights", options.mapWeights,
                     "Map plain weights into memory instead of reading them");
}

}  // namespace quavin_tool
