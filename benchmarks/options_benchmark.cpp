// Compares what engine options and clones change: loading through the cache, cloning, and
// predicting on two threads.
//
//     quavin_options_benchmark PLAIN SECURED KEYHEX CALLS [ROUNDS]      times, in turns
//     quavin_options_benchmark --memory raw|clone FOLDER COUNT
//
// The folders hold the same model, as models/make_mobilenet.py writes it, plain and encrypted.
// CALLS is how many predictions each thread makes in one measurement. The second form prints what
// the first prediction adds to the process's memory, and then each of COUNT clones that predicts
// once, or, for "raw", each inference request made by hand; each side needs its own process.

#include <quavin/quavin.h>

#include <exception>
#include <filesystem>
#include <functional>
#include <future>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "clone_memory.h"
#include "packages.h"
#include "raw_network.h"
#include "rounds.h"

using namespace VelmoraQuavin;

namespace {

namespace fs = std::filesystem;
using Model = std::shared_ptr<QuavinModel>;
using benchmark::loadPackage;
using benchmark::require;

struct Package {
    std::string folder;
    std::string keyHex;
};

// A directory for compiled networks, removed in the end.
class Cache {
public:
    explicit Cache(const std::string& name) : path_(fs::temp_directory_path() / name) {
        clear();
        options_.cacheDirectory = path_.u8string();
    }
    Cache(const Cache&) = delete;
    Cache& operator=(const Cache&) = delete;
    ~Cache() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }

    void clear() const {
        fs::remove_all(path_);
        fs::create_directory(path_);
    }
    const EngineOptions& options() const { return options_; }

private:
    fs::path path_;
    EngineOptions options_;
};

// What `prepare` does and the destruction of the result are not timed.
benchmark::Contestant loading(
    const std::string& name, const Package& package, const EngineOptions& options,
    const std::function<void()>& prepare = [] {}) {
    return {name, [package, options, prepare] {
                prepare();
                Model model;
                return benchmark::timeOf(
                    [&] { model = loadPackage(package.folder, package.keyHex, options); });
            }};
}

void compareLoads(const Package& plain, const Package& secured, int rounds) {
    const Cache written("quavin-benchmark-written");
    const Cache kept("quavin-benchmark-kept");
    const EngineOptions none;
    const Model original = loadPackage(plain.folder, plain.keyHex, none);
    benchmark::RawNetwork raw(plain.folder);
    const std::string exported = raw.exported();
    benchmark::compare(
        "getModel " + plain.folder,
        {loading("without a cache", plain, none),
         loading("without a cache again (noise)", plain, none),
         loading("first load with a cache", plain, written.options(), [&] { written.clear(); }),
         loading("from the cache", plain, kept.options()),
         {"the import in that, by hand",
          [&] { return benchmark::timeOf([&] { raw.import(exported); }); }},
         {"cloneModel",
          [&] {
              Model clone;
              return benchmark::timeOf(
                  [&] { require(QuavinClient::instance().cloneModel(original, clone)); });
          }}},
        rounds);
    benchmark::compare("getModel " + secured.folder + " from the cache",
                       {loading("plain", plain, kept.options()),
                        loading("plain again (noise)", plain, kept.options()),
                        loading("secured", secured, kept.options())},
                       rounds);
}

void predict(const Model& model, int calls) {
    std::vector<std::shared_ptr<QuavinFeature>> inputs;
    require(model->allocateInputs(inputs));
    for (int call = 0; call < calls; ++call) {
        std::vector<std::shared_ptr<QuavinFeature>> outputs;
        require(model->predict(inputs, outputs));
    }
}

// Seconds per prediction, of all threads together.
void compareThreads(const Package& package, int calls, int rounds) {
    EngineOptions throughput;
    throughput.hint = EngineOptions::Hint::Throughput;
    const Model single = loadPackage(package.folder, package.keyHex);
    const Model first = loadPackage(package.folder, package.keyHex, throughput);
    Model second;
    require(QuavinClient::instance().cloneModel(first, second));
    const auto alone = [&] {
        return benchmark::timeOf([&] { predict(single, 2 * calls); }) / (2 * calls);
    };
    benchmark::compare("predict " + package.folder,
                       {{"one model, one thread", alone},
                        {"one model, one thread again (noise)", alone},
                        {"two clones on two threads, Throughput",
                         [&] {
                             return benchmark::timeOf([&] {
                                        auto other =
                                            std::async(std::launch::async, predict, second, calls);
                                        predict(first, calls);
                                        other.get();
                                    }) /
                                    (2 * calls);
                         }}},
                       rounds);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::cerr << "usage: quavin_options_benchmark PLAIN SECURED KEYHEX CALLS [ROUNDS]\n"
                     "       quavin_options_benchmark --memory raw|clone FOLDER COUNT\n";
        return 2;
    }
    try {
        const QuavinClientInitTerm library{QuavinConfig()};
        if (std::string(argv[1]) == "--memory") {
            benchmark::printCloneMemory(argv[2], argv[3], std::stoi(argv[4]));
            return 0;
        }
        const Package plain{argv[1], ""};
        const Package secured{argv[2], argv[3]};
        const int rounds = argc > 5 ? std::stoi(argv[5]) : 31;
        compareLoads(plain, secured, rounds);
        compareThreads(plain, std::stoi(argv[4]), rounds);
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "failed: " << exception.what() << '\n';
        return 1;
    }
}
