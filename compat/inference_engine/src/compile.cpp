#include "compile.hpp"

#include <array>
#include <cstddef>

#include "failure.hpp"
#include "runtime_call.hpp"

namespace InferenceEngine::runtime {
namespace {

constexpr std::size_t kMostSettings = 8;

}  // namespace

Handle<ov_compiled_model_t> compile(const ov_core_t& core, const ov_model_t& model,
                                    const std::string& device,
                                    const std::map<std::string, std::string>& config) {
    // Settings are passed as variable arguments, always the same number of them; the runtime reads
    // only as many as `count` says. The call that takes an array is missing before release 2026.4.
    std::array<const char*, 2 * kMostSettings> texts{};
    if (config.size() > kMostSettings) {
        throw Failure(PARAMETER_MISMATCH, "More than " + std::to_string(kMostSettings) +
                                              " configuration values for " + device);
    }
    std::size_t count = 0;
    for (const auto& [key, value] : config) {
        texts.at(count++) = key.c_str();
        texts.at(count++) = value.c_str();
    }
    ov_compiled_model_t* compiled = nullptr;
    check([&] {
        return ov_core_compile_model(&core, &model, device.c_str(), count, &compiled, texts[0],
                                     texts[1], texts[2], texts[3], texts[4], texts[5], texts[6],
                                     texts[7], texts[8], texts[9], texts[10], texts[11], texts[12],
                                     texts[13], texts[14], texts[15]);
    });
    return Handle<ov_compiled_model_t>(compiled);
}

}  // namespace InferenceEngine::runtime
