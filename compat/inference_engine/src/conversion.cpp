#include "conversion.hpp"

#include "runtime_call.hpp"

namespace InferenceEngine::runtime {
namespace {

using Preprocessor = ov_preprocess_prepostprocessor_t;

void convertInput(const Preprocessor& preprocessor, const PortType& wanted) {
    ov_preprocess_input_info_t* info = nullptr;
    check([&] {
        return ov_preprocess_prepostprocessor_get_input_info_by_index(&preprocessor, wanted.index,
                                                                      &info);
    });
    const Handle<ov_preprocess_input_info_t> infoOwner(info);
    ov_preprocess_input_tensor_info_t* tensor = nullptr;
    check([&] { return ov_preprocess_input_info_get_tensor_info(info, &tensor); });
    const Handle<ov_preprocess_input_tensor_info_t> tensorOwner(tensor);
    check([&] { return ov_preprocess_input_tensor_info_set_element_type(tensor, wanted.type); });
}

void convertOutput(const Preprocessor& preprocessor, const PortType& wanted) {
    ov_preprocess_output_info_t* info = nullptr;
    check([&] {
        return ov_preprocess_prepostprocessor_get_output_info_by_index(&preprocessor, wanted.index,
                                                                       &info);
    });
    const Handle<ov_preprocess_output_info_t> infoOwner(info);
    ov_preprocess_output_tensor_info_t* tensor = nullptr;
    check([&] { return ov_preprocess_output_info_get_tensor_info(info, &tensor); });
    const Handle<ov_preprocess_output_tensor_info_t> tensorOwner(tensor);
    check([&] { return ov_preprocess_output_set_element_type(tensor, wanted.type); });
}

}  // namespace

void convertPorts(Handle<ov_model_t>& model, const std::vector<PortType>& wanted) {
    if (wanted.empty()) {
        return;
    }
    Preprocessor* made = nullptr;
    check([&] { return ov_preprocess_prepostprocessor_create(model.get(), &made); });
    const Handle<Preprocessor> preprocessor(made);
    for (const PortType& port : wanted) {
        if (port.direction == Direction::Input) {
            convertInput(*preprocessor, port);
        } else {
            convertOutput(*preprocessor, port);
        }
    }
    ov_model_t* built = nullptr;
    check([&] { return ov_preprocess_prepostprocessor_build(preprocessor.get(), &built); });
    model.reset(built);
}

}  // namespace InferenceEngine::runtime
