#include "runtime_core.hpp"

#include <cstring>
#include <mutex>

#include "runtime_call.hpp"

namespace InferenceEngine::runtime {

std::shared_ptr<ov_core_t> sharedCore() {
    static std::mutex mutex;
    static std::weak_ptr<ov_core_t> shared;

    const std::lock_guard<std::mutex> lock(mutex);
    auto core = shared.lock();
    if (!core) {
        ov_core_t* made = nullptr;
        check([&] { return ov_core_create(&made); });
        core.reset(made, FreeHandle());
        shared = core;
    }
    return core;
}

void useSinglePrecision(const ov_core_t& core, const std::string& device) noexcept {
    constexpr const char* kSingle = "f32";
    const char* const key = ov_property_key_hint_inference_precision;
    char* now = nullptr;
    if (attempt([&] { return ov_core_get_property(&core, device.c_str(), key, &now); }) != ::OK) {
        return;
    }
    const Handle<const char> owner(now);
    if (std::strcmp(now, kSingle) != 0) {
        // Devices that only support their own precision refuse this, and keep it.
        attempt([&] { return ov_core_set_property(&core, device.c_str(), key, kSingle); });
    }
}

}  // namespace InferenceEngine::runtime
