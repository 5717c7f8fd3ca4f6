#include "runtime_core.hpp"

#include <cstring>
#include <mutex>
#include <utility>

#include "failure.hpp"
#include "properties.hpp"
#include "runtime_call.hpp"

namespace InferenceEngine::runtime {

namespace {

using Settings = std::map<std::string, std::string>;

std::shared_ptr<ov_core_t> makeCore() {
    ov_core_t* made = nullptr;
    check([&] { return ov_core_create(&made); });
    return {made, FreeHandle()};
}

void set(const ov_core_t& core, const std::string& device, const std::string& name,
         const std::string& value) {
    try {
        const auto [key, translated] = runtimeSetting(core, device, name, value);
        check([&, key = key.c_str(), wanted = translated.c_str()] {
            return ov_core_set_property(&core, device.c_str(), key, wanted);
        });
    } catch (const Failure& failure) {
        throw Failure(PARAMETER_MISMATCH, name + " = " + value + ": " + failure.what());
    }
}

void useDefault(const ov_core_t& core, const std::string& device, const char* key,
                const char* value) noexcept {
    char* now = nullptr;
    if (attempt([&] { return ov_core_get_property(&core, device.c_str(), key, &now); }) != ::OK) {
        return;
    }
    const Handle<const char> owner(now);
    if (std::strcmp(now, value) != 0) {
        // Devices that support only what they have refuse this, and keep it.
        attempt([&] { return ov_core_set_property(&core, device.c_str(), key, value); });
    }
}

}  // namespace

std::shared_ptr<ov_core_t> sharedCore() {
    return sharedCore("", {});
}

std::shared_ptr<ov_core_t> sharedCore(const std::string& device, const Settings& settings) {
    using Key = std::pair<std::string, Settings>;
    static std::mutex mutex;
    // Never destroyed: networks may be loaded while the process exits.
    static auto& cores = *new std::map<Key, std::weak_ptr<ov_core_t>>;

    const std::scoped_lock lock(mutex);
    const Key key(settings.empty() ? "" : device, settings);
    const auto known = cores.find(key);
    auto core = known == cores.end() ? nullptr : known->second.lock();
    if (!core) {
        core = makeCore();
        if (!settings.empty()) {
            useOwnDefaults(*core, device);  // unless a setting says otherwise
        }
        for (const auto& [name, value] : settings) {
            set(*core, device, name, value);
        }
        cores[key] = core;
    }
    return core;
}

void useOwnDefaults(const ov_core_t& core, const std::string& device) noexcept {
    useDefault(core, device, ov_property_key_hint_inference_precision, "f32");
    useDefault(core, device, ov_property_key_hint_enable_cpu_pinning, "NO");
}

}  // namespace InferenceEngine::runtime
