#include "engine/openvino/openvino_engine_info.h"

#include <inference_engine.hpp>
#include <memory>
#include <new>
#include <string>

#include "engine/openvino/compiling.h"
#include "engine/openvino/network_reading.h"
#include "engine/openvino/network_settings.h"
#include "engine/openvino/trial_network.h"

namespace VelmoraQuavin::internal {
namespace {

std::shared_ptr<InferenceEngine::ICNNNetReader> readTrialNetwork() {
    auto reader =
        InferenceEngine::details::shared_from_irelease(InferenceEngine::CreateCNNNetReader());
    if (reader == nullptr) {
        throw std::bad_alloc();
    }
    readWithoutWeights(*reader, kTrialNetwork);
    return reader;
}

}  // namespace

// A device's own settings leave the choice open: only a compiled network shows what was chosen.
EngineInfo openVinoEngineInfo(const EngineOptions& options) {
    InferenceEngine::Core core{std::string()};
    const InferenceEngine::CNNNetwork network(readTrialNetwork());
    const NetworkSettings settings = settingsOf(compileNetwork(core, network, options));
    return makeEngineInfo(core, kEngineDevice, settings);
}

}  // namespace VelmoraQuavin::internal
