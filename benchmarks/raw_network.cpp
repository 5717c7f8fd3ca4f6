#include "raw_network.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace benchmark {
namespace {

namespace fs = std::filesystem;

void check(ov_status_e status) {
    if (status != ov_status_e::OK) {
        throw std::runtime_error(ov_get_last_err_msg());
    }
}

std::ifstream open(const std::string& path, std::size_t& size) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file) {
        throw std::runtime_error("cannot open " + path);
    }
    size = static_cast<std::size_t>(file.tellg());
    file.seekg(0);
    return file;
}

std::string readText(const std::string& path) {
    std::size_t size = 0;
    std::ifstream file = open(path, size);
    std::string text(size, 0);
    file.read(text.data(), static_cast<std::streamsize>(size));
    return text;
}

// Straight into the memory that the runtime binds.
Tensor readTensor(const std::string& path) {
    std::size_t size = 0;
    std::ifstream file = open(path, size);
    auto extent = static_cast<int64_t>(size);
    ov_tensor_t* tensor = nullptr;
    check(ov_tensor_create(U8, {1, &extent}, &tensor));
    Tensor owned(tensor);
    if (size != 0) {
        void* memory = nullptr;
        check(ov_tensor_data(tensor, &memory));
        file.read(static_cast<char*>(memory), static_cast<std::streamsize>(size));
    }
    return owned;
}

template <typename Element>
ov_shape_t shapeOver(std::vector<Element>& dimensions) {
    return {static_cast<int64_t>(dimensions.size()), dimensions.data()};
}

}  // namespace

RawNetwork::RawNetwork(const std::string& folder, Pinning pinning, int threads) {
    ov_core_t* core = nullptr;
    check(ov_core_create(&core));
    core_.reset(core);
    // As the library does, so that both sides do the same work.
    check(ov_core_set_property(core, "CPU", ov_property_key_hint_inference_precision, "f32"));
    if (pinning == Pinning::kOff) {
        check(ov_core_set_property(core, "CPU", ov_property_key_hint_enable_cpu_pinning, "NO"));
    }
    if (threads != 0) {
        check(ov_core_set_property(core, "CPU", ov_property_key_inference_num_threads,
                                   std::to_string(threads).c_str()));
    }

    const std::string text = readText(folder + "/model.xml");
    weights_ = readTensor(folder + "/model.bin");
    ov_model_t* model = nullptr;
    check(ov_core_read_model_from_memory_buffer(core, text.data(), text.size(), weights_.get(),
                                                &model));
    const Owned<ov_model_t, ov_model_free> ownedModel(model);

    std::size_t count = 0;
    check(ov_model_inputs_size(model, &count));
    for (std::size_t index = 0; index < count; ++index) {
        inputs_.push_back(describe(model, ov_model_const_input_by_index, index));
        std::size_t elements = 1;
        for (const int64_t extent : inputs_.back().dimensions) {
            elements *= static_cast<std::size_t>(extent);
        }
        inputs_.back().memory.resize(elements * 4);
    }
    check(ov_model_outputs_size(model, &count));
    for (std::size_t index = 0; index < count; ++index) {
        outputs_.push_back(describe(model, ov_model_const_output_by_index, index));
    }

    ov_compiled_model_t* compiled = nullptr;
    check(ov_core_compile_model(core, model, "CPU", 0, &compiled));
    compiled_.reset(compiled);
    addRequest();
}

std::string RawNetwork::exported() {
    const std::string path = (fs::temp_directory_path() / "quavin-benchmark-exported").u8string();
    check(ov_compiled_model_export_model(compiled_.get(), path.c_str()));
    std::string bytes = readText(path);
    fs::remove(path);
    return bytes;
}

void RawNetwork::import(const std::string& bytes) {
    ov_compiled_model_t* compiled = nullptr;
    check(ov_core_import_model(core_.get(), bytes.data(), bytes.size(), "CPU", &compiled));
    requests_.clear();
    compiled_.reset(compiled);
    addRequest();
}

void RawNetwork::addRequest() {
    ov_infer_request_t* request = nullptr;
    check(ov_compiled_model_create_infer_request(compiled_.get(), &request));
    requests_.emplace_back(request);
}

RawNetwork::Port RawNetwork::describe(const ov_model_t* model, PortAt* portAt, std::size_t index) {
    ov_output_const_port_t* port = nullptr;
    check(portAt(model, index, &port));
    const Owned<ov_output_const_port_t, ov_output_const_port_free> ownedPort(port);
    Port described{};
    check(ov_port_get_element_type(port, &described.type));
    ov_shape_t shape{};
    check(ov_const_port_get_shape(port, &shape));
    described.dimensions.assign(shape.dims, shape.dims + shape.rank);
    ov_shape_free(&shape);
    return described;
}

void RawNetwork::predict(std::size_t kept) {
    ov_infer_request_t* const request = requests_.back().get();
    std::size_t index = 0;
    for (Port& input : inputs_) {
        ov_tensor_t* tensor = nullptr;
        check(ov_tensor_create_from_host_ptr(input.type, shapeOver(input.dimensions),
                                             input.memory.data(), &tensor));
        const Tensor owned(tensor);
        check(ov_infer_request_set_input_tensor_by_index(request, index++, tensor));
    }
    index = 0;
    for (Port& output : outputs_) {
        ov_tensor_t* tensor = nullptr;
        check(ov_tensor_create(output.type, shapeOver(output.dimensions), &tensor));
        kept_.emplace_back(tensor);
        check(ov_infer_request_set_output_tensor_by_index(request, index++, tensor));
    }
    check(ov_infer_request_infer(request));
    while (kept_.size() > kept * outputs_.size()) {
        kept_.pop_front();
    }
}

void RawNetwork::infer() {
    check(ov_infer_request_infer(requests_.back().get()));
}

}  // namespace benchmark
