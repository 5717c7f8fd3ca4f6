#include "runtime_core.hpp"

#include <mutex>

#include "failure.hpp"

namespace InferenceEngine::runtime {

std::shared_ptr<ov_core_t> sharedCore() {
    static std::mutex mutex;
    static std::weak_ptr<ov_core_t> shared;

    const std::lock_guard<std::mutex> lock(mutex);
    auto core = shared.lock();
    if (!core) {
        ov_core_t* made = nullptr;
        check(ov_core_create(&made));
        core.reset(made, FreeHandle());
        shared = core;
    }
    return core;
}

std::shared_ptr<ov_core_t> coreFromFile(const char* configFile) {
    ov_core_t* made = nullptr;
    check(ov_core_create_with_config(configFile, &made));
    return {made, FreeHandle()};
}

}  // namespace InferenceEngine::runtime
