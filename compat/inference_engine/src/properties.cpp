#include "properties.hpp"

#include <algorithm>
#include <sstream>
#include <vector>

#include "runtime_call.hpp"

namespace InferenceEngine::runtime {
namespace {

/** Translates the names that differ in the runtime. */
std::string runtimeName(const std::string& name) {
    if (name == "CPU_THREADS_NUM") {
        return ov_property_key_inference_num_threads;
    }
    if (name == "CPU_THROUGHPUT_STREAMS") {
        return ov_property_key_num_streams;
    }
    return name;
}

/** The runtime returns every value as one text; lists are separated by spaces. */
Parameter parameterOf(const std::string& name, std::string text) {
    if (name != ov_property_key_device_capabilities) {
        return text;
    }
    std::istringstream words(text);
    std::vector<std::string> list;
    for (std::string word; words >> word;) {
        list.push_back(word);
    }
    return list;
}

const char* fastestPrecision(const ov_core_t& core, const std::string& device) {
    const Parameter answer = propertyOf(core, device, ov_property_key_device_capabilities);
    const auto& capabilities = answer.as<std::vector<std::string>>();
    const auto has = [&](const char* capability) {
        return std::find(capabilities.begin(), capabilities.end(), capability) !=
               capabilities.end();
    };
    return has("BF16") ? "bf16" : has("FP16") ? "f16" : "f32";
}

}  // namespace

Parameter propertyOf(const ov_core_t& core, const std::string& device, const std::string& name) {
    char* value = nullptr;
    check([&] {
        return ov_core_get_property(&core, device.c_str(), runtimeName(name).c_str(), &value);
    });
    return parameterOf(name, takeText(value));
}

Parameter propertyOf(const ov_compiled_model_t& model, const std::string& name) {
    char* value = nullptr;
    check(
        [&] { return ov_compiled_model_get_property(&model, runtimeName(name).c_str(), &value); });
    return parameterOf(name, takeText(value));
}

std::pair<std::string, std::string> runtimeSetting(const ov_core_t& core, const std::string& device,
                                                   const std::string& name,
                                                   const std::string& value) {
    if (name == "CPU_THROUGHPUT_STREAMS" && value == "CPU_THROUGHPUT_AUTO") {
        return {ov_property_key_hint_performance_mode, "THROUGHPUT"};
    }
    if (name == "ENFORCE_BF16") {
        return {ov_property_key_hint_inference_precision,
                value == "YES" ? fastestPrecision(core, device) : "f32"};
    }
    return {runtimeName(name), value};
}

}  // namespace InferenceEngine::runtime
