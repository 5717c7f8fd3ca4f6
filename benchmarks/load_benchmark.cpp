// Compares loading a package with the same loading written by hand on the runtime's C interface.
//
//     quavin_load_benchmark PLAIN SECURED KEYHEX [ROUNDS]      times, in turns
//     quavin_load_benchmark --memory PLAIN ARCHIVE SECUREDARCHIVE KEYHEX [ROUNDS]
//                                                              times of packages in memory
//     quavin_load_benchmark --peak raw|plain|mapped|secured|buffers FOLDER [KEYHEX]
//     quavin_load_benchmark --peak archive ARCHIVE [KEYHEX]
//
// The folders hold the same model, as models/make_mobilenet.py writes it, plain and encrypted; the
// archives hold the plain folder, and the second one is encrypted as a whole. The last forms load
// once and print the process's peak memory, and what is then resident and not backed by a file, so
// each measurement needs its own process. "mapped" is plain with mapped weights.

#include <quavin/quavin.h>
#include <sys/resource.h>

#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

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

void compareMemory(const std::string& plain, const std::string& archivePath,
                   const std::string& securedPath, const std::string& keyHex, int rounds) {
    const std::vector<char> archive = benchmark::readFile(archivePath);
    const std::vector<char> secured = benchmark::readFile(securedPath);
    const std::vector<PackageBuffer> buffers = benchmark::readBuffers(plain);
    const auto loadPlain = [plain] { return benchmark::loadPackage(plain, ""); };
    benchmark::compare(
        "getModel from memory",
        {contestant("directory", loadPlain), contestant("directory again (noise)", loadPlain),
         contestant("archive", [&] { return benchmark::loadArchive(archive, ""); }),
         contestant("buffers with owners", [&] { return benchmark::loadBuffers(buffers); }),
         contestant("secured archive", [&] { return benchmark::loadArchive(secured, keyHex); })},
        rounds);
}

// In MiB; 0 if the system does not say.
long anonymousMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "RssAnon:") {
            long kibibytes = 0;
            status >> kibibytes;
            return kibibytes / 1024;
        }
    }
    return 0;
}

void printPeak(const std::string& side, const std::string& folder, const std::string& keyHex) {
    std::unique_ptr<benchmark::RawNetwork> raw;
    std::shared_ptr<QuavinModel> model;
    std::vector<char> archive;
    if (side == "archive") {
        archive = benchmark::readFile(folder);
        model = benchmark::loadArchive(archive, keyHex);
    } else if (side == "buffers") {
        model = benchmark::loadBuffers(benchmark::readBuffers(folder));
    } else if (side == "raw") {
        raw = std::make_unique<benchmark::RawNetwork>(folder);
    } else {
        EngineOptions options;
        options.mapWeights = side == "mapped";
        model = benchmark::loadPackage(folder, keyHex, options);
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::cout << "peak resident memory, " << side << ": " << usage.ru_maxrss / 1024 << " MiB\n"
              << "anonymous memory, " << side << ": " << anonymousMemory() << " MiB\n";
}

}  // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    if (argc < (mode == "--memory" ? 6 : 4)) {
        std::cerr << "usage: quavin_load_benchmark PLAIN SECURED KEYHEX [ROUNDS]\n"
                     "       quavin_load_benchmark --memory PLAIN ARCHIVE SECUREDARCHIVE KEYHEX "
                     "[ROUNDS]\n"
                     "       quavin_load_benchmark --peak raw|plain|mapped|secured|buffers FOLDER "
                     "[KEYHEX]\n"
                     "       quavin_load_benchmark --peak archive ARCHIVE [KEYHEX]\n";
        return 2;
    }
    try {
        const QuavinClientInitTerm library{QuavinConfig()};
        if (mode == "--memory") {
            compareMemory(argv[2], argv[3], argv[4], argv[5], argc > 6 ? std::stoi(argv[6]) : 21);
        } else if (mode == "--peak") {
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
