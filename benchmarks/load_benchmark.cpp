// Compares loading a package with the same loading written by hand on the runtime's C interface.
//
//     quavin_load_benchmark PLAIN SECURED KEYHEX [ROUNDS]      times, in turns
//     quavin_load_benchmark --peak raw|plain|mapped|secured FOLDER [KEYHEX]
//
// The folders hold the same model, as models/make_mobilenet.py writes it, plain and encrypted. The
// second form loads once and prints the process's peak memory, and what is then resident and not
// backed by a file, so each measurement needs its own process. "mapped" is plain with mapped
// weights.

#include <quavin/quavin.h>
#include <sys/resource.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "anonymous_memory.h"
#include "packages.h"
#include "raw_network.h"
#include "rounds.h"

using namespace VelmoraQuavin;

namespace {

// The result is destroyed after the clock has stopped.
template <typename Load>
benchmark::Contestant contestant(const std::string& name, Load loadOnce) {
    return {name, [loadOnce] {
                decltype(loadOnce()) result;
                return benchmark::timeOf([&] { result = loadOnce(); });
            }};
}

void compareTimes(const std::string& plain, const std::string& secured, const std::string& keyHex,
                  int rounds) {
    const auto byHand = [plain] { return std::make_unique<benchmark::RawNetwork>(plain); };
    const auto loadPlain = [plain] { return benchmark::loadPackage(plain, ""); };
    const auto loadSecured = [secured, keyHex] { return benchmark::loadPackage(secured, keyHex); };
    benchmark::compare("getModel " + plain,
                       {contestant("by hand", byHand), contestant("by hand again (noise)", byHand),
                        contestant("getModel", loadPlain)},
                       rounds);
    benchmark::compare(
        "getModel " + secured,
        {contestant("plain", loadPlain), contestant("plain again (noise)", loadPlain),
         contestant("secured", loadSecured)},
        rounds);
}

void printPeak(const std::string& side, const std::string& folder, const std::string& keyHex) {
    std::unique_ptr<benchmark::RawNetwork> raw;
    std::shared_ptr<QuavinModel> model;
    if (side == "raw") {
        raw = std::make_unique<benchmark::RawNetwork>(folder);
    } else {
        EngineOptions options;
        options.mapWeights = side == "mapped";
        model = benchmark::loadPackage(folder, keyHex, options);
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::cout << "peak resident memory, " << side << ": " << usage.ru_maxrss / 1024 << " MiB\n"
              << "anonymous memory, " << side << ": " << benchmark::anonymousMemory() / 1024
              << " MiB\n";
}

}  // namespace

int main(int argc, char** argv) {
    const bool peak = argc > 3 && std::string(argv[1]) == "--peak";
    if (argc < 4) {
        std::cerr
            << "usage: quavin_load_benchmark PLAIN SECURED KEYHEX [ROUNDS]\n"
               "       quavin_load_benchmark --peak raw|plain|mapped|secured FOLDER [KEYHEX]\n";
        return 2;
    }
    try {
        const QuavinClientInitTerm library{QuavinConfig()};
        if (peak) {
            printPeak(argv[2], argv[3], argc > 4 ? argv[4] : "");
        } else {
            compareTimes(argv[1], argv[2], argv[3], argc > 4 ? std::stoi(argv[4]) : 21);
        }
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "failed: " << exception.what() << '\n';
        return 1;
    }
}
