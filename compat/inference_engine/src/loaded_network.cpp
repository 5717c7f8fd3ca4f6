#include "loaded_network.hpp"

#include <algorithm>
#include <utility>

#include "bound_port.hpp"
#include "exported_network.hpp"
#include "failure.hpp"
#include "loaded_request.hpp"
#include "properties.hpp"
#include "runtime_call.hpp"

namespace InferenceEngine::runtime {
namespace {

/** Made anew for each caller, who can change it: constness does not reach an input's Data. */
DataPtr dataOf(const LoadedPort& port) {
    const Layout layout = TensorDesc::getLayoutByDims(port.dims);
    return std::make_shared<Data>(port.name, TensorDesc(port.precision, port.dims, layout));
}

}  // namespace

LoadedNetwork::LoadedNetwork(Handle<ov_compiled_model_t> model, std::vector<LoadedPort> ports,
                             std::shared_ptr<const void> memory, std::string_view blob)
    : memory_(std::move(memory)), blob_(blob), model_(std::move(model)), ports_(std::move(ports)) {
    // Stable, so that an input stays before the output of the same name.
    std::stable_sort(
        ports_.begin(), ports_.end(),
        [](const LoadedPort& left, const LoadedPort& right) { return left.name < right.name; });
}

StatusCode LoadedNetwork::GetOutputsInfo(ConstOutputsDataMap& outputs,
                                         ResponseDesc* response) const noexcept {
    return answer(response, [&] {
        ConstOutputsDataMap found;
        for (const LoadedPort& port : ports_) {
            if (port.direction == Direction::Output) {
                found[port.name] = dataOf(port);
            }
        }
        outputs = std::move(found);
    });
}

StatusCode LoadedNetwork::GetInputsInfo(ConstInputsDataMap& inputs,
                                        ResponseDesc* response) const noexcept {
    return answer(response, [&] {
        ConstInputsDataMap found;
        for (const LoadedPort& port : ports_) {
            if (port.direction == Direction::Input) {
                const auto input = std::make_shared<InputInfo>();
                input->setInputData(dataOf(port));
                found[port.name] = input;
            }
        }
        inputs = std::move(found);
    });
}

StatusCode LoadedNetwork::CreateInferRequest(IInferRequest::Ptr& request,
                                             ResponseDesc* response) noexcept {
    return answer(response, [&] { request = makeRequest(); });
}

StatusCode LoadedNetwork::Export(std::ostream& networkModel, ResponseDesc* response) noexcept {
    return answer(response, [&] {
        // The runtime can't read what it exports of a network that it has imported.
        if (blob_.empty()) {
            exportNetwork(*model_, ports_, networkModel);
        } else {
            writeNetwork(ports_, blob_, networkModel);
        }
    });
}

StatusCode LoadedNetwork::GetConfig(const std::string& name, Parameter& result,
                                    ResponseDesc* response) const noexcept {
    return answer(response, [&] { result = propertyOf(*model_, name); });
}

IInferRequest::Ptr LoadedNetwork::makeRequest() const {
    ov_infer_request_t* made = nullptr;
    check([&] { return ov_compiled_model_create_infer_request(model_.get(), &made); });
    Handle<ov_infer_request_t> handle(made);
    std::vector<BoundPort> bound(ports_.begin(), ports_.end());
    return details::shared_from_irelease(
        new LoadedRequest(std::move(handle), std::move(bound), memory_));
}

}  // namespace InferenceEngine::runtime
