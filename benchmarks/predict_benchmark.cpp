// Compares predict() with the same prediction written by hand on the runtime's C interface.
//
//     quavin_predict_benchmark FOLDER KEPT CALLS [ROUNDS]
//     quavin_predict_benchmark --for SECONDS pinned|unpinned|library FOLDER THREADS
//
// FOLDER holds a package as models/make_mobilenet.py writes it; KEPT is how many of the latest
// predictions' outputs each side keeps alive; CALLS is how many calls one measurement averages. The
// second form predicts with one side alone, to see what several processes at once do to each other:
// by hand with the runtime's pinned threads, by hand without pinning, or with the library.

#include <quavin/quavin.h>

#include <chrono>
#include <cstdlib>
#include <deque>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "raw_network.h"
#include "rounds.h"

using namespace VelmoraQuavin;

namespace {

using Features = std::vector<std::shared_ptr<QuavinFeature>>;

class Host {
public:
    explicit Host(const std::string& folder, int threads = 0) {
        EngineOptions options;
        options.threads = threads;
        QuavinStatus status = QuavinClient::instance().getModel(folder, model_, 0,
                                                                QuavinModelType::Openvino, options);
        if (status.ok()) {
            status = model_->allocateInputs(inputs_);
        }
        if (!status.ok()) {
            throw Exception(status.getDescription(), status.getCode());
        }
    }

    void predict(std::size_t kept) {
        Features outputs;
        const QuavinStatus status = model_->predict(inputs_, outputs);
        if (!status.ok()) {
            throw Exception(status.getDescription(), status.getCode());
        }
        kept_.push_back(std::move(outputs));
        while (kept_.size() > kept) {
            kept_.pop_front();
        }
    }

private:
    std::shared_ptr<QuavinModel> model_;
    Features inputs_;
    std::deque<Features> kept_;
};

template <typename Side>
benchmark::Contestant contestant(const std::string& name, Side& side, std::size_t kept, int calls) {
    return {name, [&side, kept, calls] {
                return benchmark::timeOf([&side, kept, calls] {
                           for (int call = 0; call < calls; ++call) {
                               side.predict(kept);
                           }
                       }) /
                       calls;
            }};
}

void run(const std::string& folder, std::size_t kept, int calls, int rounds) {
    const QuavinClientInitTerm library{QuavinConfig()};
    benchmark::RawNetwork baseline(folder);
    benchmark::RawNetwork again(folder);
    benchmark::RawNetwork unpinned(folder, benchmark::RawNetwork::Pinning::kOff);
    Host host(folder);
    benchmark::compare("predict " + folder + ", " + std::to_string(kept) + " predictions kept",
                       {contestant("by hand", baseline, kept, calls),
                        contestant("by hand again (noise)", again, kept, calls),
                        contestant("by hand, threads not pinned", unpinned, kept, calls),
                        contestant("QuavinModel::predict", host, kept, calls)},
                       rounds);
    if (kept != 0) {
        return;
    }
    const auto bare = [calls](benchmark::RawNetwork& network) {
        network.predict(0);
        return [&network, calls] {
            return benchmark::timeOf([&network, calls] {
                       for (int call = 0; call < calls; ++call) {
                           network.infer();
                       }
                   }) /
                   calls;
        };
    };
    benchmark::compare("predict " + folder + ", against inference alone",
                       {{"by hand, everything bound already", bare(baseline)},
                        {"by hand again (noise)", bare(again)},
                        {"by hand, threads not pinned", bare(unpinned)},
                        contestant("QuavinModel::predict", host, kept, calls)},
                       rounds);
}

template <typename Side>
void runFor(double seconds, const std::string& name, Side side) {
    // Others that start at the same time have loaded their networks by then.
    std::this_thread::sleep_for(std::chrono::seconds(1));
    int calls = 0;
    double used = 0;
    for (; used < seconds; ++calls) {
        used += benchmark::timeOf([&side] { side.predict(0); });
    }
    std::cout << name << ": " << 1e3 * used / calls << " ms" << std::endl;
}

void runFor(double seconds, const std::string& side, const std::string& folder, int threads) {
    const QuavinClientInitTerm library{QuavinConfig()};
    const std::string name =
        side + ", " + (threads == 0 ? "all" : std::to_string(threads)) + " threads, " + folder;
    if (side == "library") {
        runFor(seconds, name, Host(folder, threads));
    } else {
        using Pinning = benchmark::RawNetwork::Pinning;
        runFor(seconds, name,
               benchmark::RawNetwork(folder, side == "pinned" ? Pinning::kDefault : Pinning::kOff,
                                     threads));
    }
}

}  // namespace

int main(int argc, char** argv) {
    const bool alone = argc == 6 && std::string(argv[1]) == "--for";
    if (argc < 4 || (argc > 5 && !alone)) {
        std::cerr << "usage: quavin_predict_benchmark FOLDER KEPT CALLS [ROUNDS]\n"
                     "       quavin_predict_benchmark --for SECONDS pinned|unpinned|library FOLDER "
                     "THREADS\n";
        return 2;
    }
    try {
        if (alone) {
            runFor(std::stod(argv[2]), argv[3], argv[4], std::stoi(argv[5]));
            return 0;
        }
        run(argv[1], std::stoul(argv[2]), std::stoi(argv[3]), argc > 4 ? std::stoi(argv[4]) : 31);
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "failed: " << exception.what() << '\n';
        return 1;
    }
}
