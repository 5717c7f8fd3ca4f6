// Predicts on two threads at once, each with a clone of one model.
//
//     parallel <folder of the digits package> [<folder for compiled networks>]

#include <quavin/quavin.h>

#include <algorithm>
#include <future>
#include <iostream>
#include <memory>
#include <vector>

using namespace VelmoraQuavin;

namespace {

constexpr int kPredictions = 1000;  // of each thread

void require(const QuavinStatus& status) {
    if (!status.ok()) {
        throw Exception(status.getDescription(), status.getCode());
    }
}

std::shared_ptr<QuavinModel> loadModel(const String& package, const String& cache) {
    EngineOptions options;
    options.hint = EngineOptions::Hint::Throughput;
    options.cacheDirectory = cache;  // empty for none
    std::shared_ptr<QuavinModel> model;
    require(
        QuavinClient::instance().getModel(package, model, 0, QuavinModelType::Openvino, options));
    return model;
}

// Draws a "1" of 8x8 pixels, again and again; returns how often it was read as one.
int readOnes(const std::shared_ptr<QuavinModel>& model) {
    std::vector<std::shared_ptr<QuavinFeature>> inputs;
    require(model->allocateInputs(inputs));
    auto* pixels = reinterpret_cast<float*>(inputs[0]->asTensor()->buffer());
    for (int row = 0; row < 8; ++row) {
        pixels[row * 8 + 3] = 16;
        pixels[row * 8 + 4] = 16;
    }
    int ones = 0;
    for (int i = 0; i < kPredictions; ++i) {
        std::vector<std::shared_ptr<QuavinFeature>> outputs;
        require(model->predict(inputs, outputs));
        const auto* digits = reinterpret_cast<const float*>(outputs[0]->asTensor()->buffer());
        ones += std::max_element(digits, digits + 10) - digits == 1 ? 1 : 0;
    }
    return ones;
}

void predictInParallel(const String& package, const String& cache) {
    const QuavinClientInitTerm library{QuavinConfig()};
    const std::shared_ptr<QuavinModel> model = loadModel(package, cache);
    std::shared_ptr<QuavinModel> clone;
    require(QuavinClient::instance().cloneModel(model, clone));

    std::future<int> second = std::async(std::launch::async, readOnes, clone);
    const int ones = readOnes(model);
    std::cout << "Two threads read a 1 in " << ones + second.get() << " of " << 2 * kPredictions
              << " predictions.\n";
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::cerr << "usage: parallel <folder of the digits package> "
                     "[<folder for compiled networks>]\n";
        return 2;
    }
    try {
        predictInParallel(argv[1], argc == 3 ? argv[2] : "");
    } catch (...) {
        const QuavinStatus status = getStatusFromCurrentException();
        std::cerr << "code " << status.getCode() << ": " << status.getDescription() << '\n';
        return 1;
    }
    return 0;
}
