#include "compile.hpp"

#include "runtime_call.hpp"

namespace InferenceEngine::runtime {

Handle<ov_compiled_model_t> compile(const ov_core_t& core, const ov_model_t& model,
                                    const std::string& device) {
    ov_compiled_model_t* compiled = nullptr;
    check([&] { return ov_core_compile_model(&core, &model, device.c_str(), 0, &compiled); });
    return Handle<ov_compiled_model_t>(compiled);
}

}  // namespace InferenceEngine::runtime
