#include <cstring>
#include <string>

#include "c/model_handle.h"
#include "c/outputs_handle.h"
#include "c/results.h"
#include "quavin/c.h"

namespace VelmoraQuavin::internal {
namespace {

Outputs predict(const quavin_model* handle, const void* const* inputs, const std::size_t* sizes,
                std::size_t count) {
    const std::shared_ptr<ModelHandle> model = objectOf(handle);
    std::vector<std::shared_ptr<QuavinFeature>> features;
    require(model->model()->predict(model->features().over(model->inputs(), inputs, sizes, count),
                                    features));
    Outputs outputs;
    outputs.reserve(features.size());
    for (const std::shared_ptr<QuavinFeature>& feature : features) {
        outputs.emplace_back(*feature);
    }
    return outputs;
}

// Before anything is copied, so that a failure leaves all of the caller's memory as it is.
void requireRoom(const Outputs& results, void* const* outputs, const std::size_t* sizes,
                 std::size_t count) {
    if (count != results.size()) {
        throw InvalidArgumentsException("The model has " + std::to_string(results.size()) +
                                        " outputs and was given " + std::to_string(count));
    }
    for (std::size_t i = 0; i < count; ++i) {
        const Output& result = results[i];
        if (outputs[i] == nullptr || sizes[i] != result.bytes()) {
            throw InvalidArgumentsException(
                "Output \"" + result.name() + "\" has " + std::to_string(result.bytes()) +
                " bytes and was given " + std::to_string(outputs[i] == nullptr ? 0 : sizes[i]));
        }
    }
}

}  // namespace
}  // namespace VelmoraQuavin::internal

using namespace VelmoraQuavin;
using namespace VelmoraQuavin::internal;

quavin_status quavin_predict(quavin_model* model, const void* const* inputs, const size_t* sizes,
                             size_t count, quavin_outputs** outputs) {
    return guardedHandle(
        outputs, [&] { return std::make_shared<Outputs>(predict(model, inputs, sizes, count)); });
}

quavin_status quavin_predict_into(quavin_model* model, const void* const* inputs,
                                  const size_t* input_sizes, size_t input_count,
                                  void* const* outputs, const size_t* output_sizes,
                                  size_t output_count) {
    return guarded([&] {
        if (output_count != 0) {
            requireGiven(outputs, "outputs");
            requireGiven(output_sizes, "output_sizes");
        }
        const Outputs results = predict(model, inputs, input_sizes, input_count);
        requireRoom(results, outputs, output_sizes, output_count);
        for (std::size_t i = 0; i < output_count; ++i) {
            std::memcpy(outputs[i], results[i].data(), results[i].bytes());
        }
    });
}
