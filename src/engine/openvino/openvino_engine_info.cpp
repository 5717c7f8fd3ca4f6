#include "engine/openvino/openvino_engine_info.h"

#include <cstdint>
#include <inference_engine.hpp>
#include <memory>
#include <new>
#include <string>

#include "engine/openvino/network_settings.h"
#include "engine/openvino/trial_network.h"

namespace VelmoraQuavin::internal {
namespace {

std::shared_ptr<InferenceEngine::ICNNNetReader> readTrialNetwork() {
    using namespace InferenceEngine;
    auto reader = details::shared_from_irelease(CreateCNNNetReader());
    if (reader == nullptr) {
        throw std::bad_alloc();
    }
    const auto noWeights = make_shared_blob<std::uint8_t>(TensorDesc(Precision::U8, {0}, ANY));
    noWeights->allocate();
    ResponseDesc response;
    StatusCode status = reader->ReadNetwork(kTrialNetwork.data(), kTrialNetwork.size(), &response);
    if (status == OK) {
        status = reader->SetWeights(noWeights, &response);
    }
    if (status != OK) {
        details::extract_exception(status, response.msg);
    }
    return reader;
}

}  // namespace

// A device's own settings leave the choice open: only a compiled network shows what was chosen.
EngineInfo openVinoEngineInfo() {
    InferenceEngine::Core core{std::string()};
    const InferenceEngine::CNNNetwork network(readTrialNetwork());
    const NetworkSettings settings = settingsOf(core.LoadNetwork(network, kEngineDevice, {}));
    return makeEngineInfo(core, kEngineDevice, settings);
}

}  // namespace VelmoraQuavin::internal
