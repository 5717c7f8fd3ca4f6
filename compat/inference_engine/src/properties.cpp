#include "properties.hpp"

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

}  // namespace InferenceEngine::runtime
