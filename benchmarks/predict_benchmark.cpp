// Compares predict() with the same prediction written by hand on the runtime's C interface.
//
//     quavin_predict_benchmark FOLDER KEPT CALLS [ROUNDS]
//
// FOLDER holds a package as models/make_mobilenet.py writes it; KEPT is how many of the latest
// predictions' outputs each side keeps alive; CALLS is how many calls one measurement averages.

#include <quavin/quavin.h>

#include <cstdlib>
#include <deque>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "raw_network.h"
#include "rounds.h"

using namespace VelmoraQuavin;

namespace {

using Features = std::vector<std::shared_ptr<QuavinFeature>>;

class Host {
public:
    explicit Host(const std::string& folder) {
        QuavinStatus status =
            QuavinClient::instance().getModel(folder, model_, 0, QuavinModelType::Openvino);
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

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::cerr << "usage: quavin_predict_benchmark FOLDER KEPT CALLS [ROUNDS]\n";
        return 2;
    }
    try {
        run(argv[1], std::stoul(argv[2]), std::stoi(argv[3]), argc > 4 ? std::stoi(argv[4]) : 31);
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "failed: " << exception.what() << '\n';
        return 1;
    }
}
