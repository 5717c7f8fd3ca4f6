#include "compile.hpp"

#include <array>
#include <cstddef>

#include "failure.hpp"

namespace InferenceEngine::runtime {
namespace {

constexpr std::size_t kMostSettings = 8;

/** Whether a device computes with half precision of its own accord, as arm64 processors do. */
bool prefersHalfPrecision(const ov_core_t& core, const std::string& device) {
    char* precision = nullptr;
    return ov_core_get_property(&core, device.c_str(), ov_property_key_hint_inference_precision,
                                &precision) == ::OK &&
           takeText(precision) == "f16";
}

}  // namespace

Handle<ov_compiled_model_t> compile(const ov_core_t& core, const ov_model_t& model,
                                    const std::string& device,
                                    const std::map<std::string, std::string>& config) {
    // Settings go as variable arguments, whose number is fixed here; the runtime reads only those
    // that it is told about. Its call that takes an array is missing from releases before 2026.4.
    std::array<const char*, 2 * kMostSettings + 2> texts{};
    if (config.size() > kMostSettings) {
        throw Failure(PARAMETER_MISMATCH, "More than " + std::to_string(kMostSettings) +
                                              " configuration values for " + device);
    }
    std::map<std::string, std::string> settings = config;
    if (prefersHalfPrecision(core, device)) {
        // The networks' floats go beyond 65504, where half precision becomes infinite. What the
        // caller sets stays.
        settings.emplace(ov_property_key_hint_inference_precision, "f32");
    }
    std::size_t count = 0;
    for (const auto& [key, value] : settings) {
        texts.at(count++) = key.c_str();
        texts.at(count++) = value.c_str();
    }
    ov_compiled_model_t* compiled = nullptr;
    check(ov_core_compile_model(&core, &model, device.c_str(), count, &compiled, texts[0], texts[1],
                                texts[2], texts[3], texts[4], texts[5], texts[6], texts[7],
                                texts[8], texts[9], texts[10], texts[11], texts[12], texts[13],
                                texts[14], texts[15], texts[16], texts[17]));
    return Handle<ov_compiled_model_t>(compiled);
}

}  // namespace InferenceEngine::runtime
