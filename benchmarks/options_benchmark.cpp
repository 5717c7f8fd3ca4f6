// Compares what engine options and clones change: loading through the cache, cloning, and
// predicting on two threads.
//
//     quavin_options_benchmark PLAIN SECURED KEYHEX CALLS [ROUNDS]
//
// The folders hold the same model, as models/make_mobilenet.py writes it, plain and encrypted.
// CALLS is how many predictions each thread makes in one measurement.

#include <quavin/quavin.h>

#include <array>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <future>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "rounds.h"

using namespace VelmoraQuavin;

namespace {

namespace fs = std::filesystem;
using Model = std::shared_ptr<QuavinModel>;
using Key = std::array<unsigned char, 16>;

void require(const QuavinStatus& status) {
    if (!status.ok()) {
        throw Exception(status.getDescription(), status.getCode());
    }
}

Key keyOf(const std::string& hex) {
    Key key{};
    for (std::size_t index = 0; index < key.size(); ++index) {
        key[index] =
            static_cast<unsigned char>(std::strtoul(hex.substr(2 * index, 2).c_str(), nullptr, 16));
    }
    return key;
}

struct Package {
    std::string folder;
    const Key* key = nullptr;
};

Model load(const Package& package, const EngineOptions& options) {
    auto metadata = std::make_shared<ModelMetadata>();
    require(metadata->load(Filepath(package.folder).append(Filepath("manifest.json"))));
    if (package.key != nullptr) {
        for (ModelComponent& component :
             metadata->getTargets().at(QuavinModelType::Openvino).components) {
            component.setCryptoKey(package.key->data());
        }
    }
    Model model;
    require(QuavinClient::instance().getModel(metadata, model, QuavinModelType::Openvino, options));
    return model;
}

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
                return benchmark::timeOf([&] { model = load(package, options); });
            }};
}

void compareLoads(const Package& plain, const Package& secured, int rounds) {
    const Cache written("quavin-benchmark-written");
    const Cache kept("quavin-benchmark-kept");
    const EngineOptions none;
    const Model original = load(plain, none);
    benchmark::compare(
        "getModel " + plain.folder,
        {loading("without a cache", plain, none),
         loading("without a cache again (noise)", plain, none),
         loading("first load with a cache", plain, written.options(), [&] { written.clear(); }),
         loading("from the cache", plain, kept.options()),
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
    const Model single = load(package, EngineOptions());
    const Model first = load(package, throughput);
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
        std::cerr << "usage: quavin_options_benchmark PLAIN SECURED KEYHEX CALLS [ROUNDS]\n";
        return 2;
    }
    try {
        const QuavinClientInitTerm library{QuavinConfig()};
        const Key key = keyOf(argv[3]);
        const Package plain{argv[1]};
        const Package secured{argv[2], &key};
        const int rounds = argc > 5 ? std::stoi(argv[5]) : 31;
        compareLoads(plain, secured, rounds);
        compareThreads(plain, std::stoi(argv[4]), rounds);
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "failed: " << exception.what() << '\n';
        return 1;
    }
}
