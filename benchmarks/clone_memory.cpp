#include "clone_memory.h"

#include <malloc.h>
#include <quavin/quavin.h>

#include <functional>
#include <iostream>
#include <memory>
#include <vector>

#include "anonymous_memory.h"
#include "packages.h"
#include "raw_network.h"

namespace benchmark {

using namespace VelmoraQuavin;

namespace {

// In KiB, without what loading has left free for later allocations to reuse.
long memoryInUse() {
    ::malloc_trim(0);
    return anonymousMemory();
}

void printGrowth(const std::string& cause, int count, const std::function<void()>& work) {
    const long before = memoryInUse();
    for (int i = 0; i < count; ++i) {
        work();
    }
    std::cout << "anonymous memory added by " << cause << ": " << (memoryInUse() - before) / count
              << " KiB\n";
}

void printRequests(const std::string& folder, int count, const std::string& mean) {
    RawNetwork raw(folder);
    printGrowth("the first prediction by hand", 1, [&] { raw.predict(0); });
    printGrowth("another request by hand" + mean, count, [&] {
        raw.addRequest();
        raw.predict(0);
    });
}

void printClones(const std::string& folder, int count, const std::string& mean) {
    const std::shared_ptr<QuavinModel> original = loadPackage(folder, "");
    std::vector<std::shared_ptr<QuavinFeature>> inputs;
    require(original->allocateInputs(inputs));
    const auto predict = [&inputs](const QuavinModel& model) {
        std::vector<std::shared_ptr<QuavinFeature>> outputs;
        require(model.predict(inputs, outputs));
    };
    printGrowth("the first prediction", 1, [&] { predict(*original); });
    std::vector<std::shared_ptr<QuavinModel>> clones;
    printGrowth("a clone" + mean, count, [&] {
        clones.emplace_back();
        require(QuavinClient::instance().cloneModel(original, clones.back()));
        predict(*clones.back());
    });
}

}  // namespace

void printCloneMemory(const std::string& side, const std::string& folder, int count) {
    const std::string mean = ", mean of " + std::to_string(count);
    if (side == "raw") {
        printRequests(folder, count, mean);
    } else {
        printClones(folder, count, mean);
    }
}

}  // namespace benchmark
