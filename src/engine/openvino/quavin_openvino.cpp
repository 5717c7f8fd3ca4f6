#include "engine/openvino/quavin_openvino.h"

#include "engine/openvino/network_reading.h"
#include "quavin/status.h"

namespace VelmoraQuavin {
namespace {

using internal::NetworkComponentEntry;

constexpr const char* kEngineDevice = "CPU";

}  // namespace

QuavinOpenVino::QuavinOpenVino(const String& name, const Device& /*device*/)
    : QuavinModel(name, QuavinModelType::Openvino), core_(std::string()) {}

QuavinOpenVino::~QuavinOpenVino() {
    closePools();
}

String QuavinOpenVino::getName() const {
    return QuavinModel::getName();
}

QuavinStatus QuavinOpenVino::prepareImpl() {
    return {SUCCESS, ""};
}

QuavinStatus QuavinOpenVino::loadImpl(const std::vector<ModelComponent>& components) {
    const std::vector<NetworkComponentEntry> entries =
        internal::collectNetworkComponents(components, getMetadata()->getRootDir());
    QuavinStatus status = internal::checkNetworkComponents(entries);
    if (!status.ok()) {
        return status;
    }
    if (!networkRead_) {
        internal::readNetwork(reader_, entries[0], entries[1]);
        networkRead_ = true;
    }
    const InferenceEngine::CNNNetwork network(reader_);
    inferRequest_ = core_.LoadNetwork(network, kEngineDevice, {}).CreateInferRequestPtr();
    if (inferRequest_ == nullptr || !*inferRequest_) {
        return {ML_FRAMEWORK_ERROR, "OpenVino unable to load model : "};
    }
    openPools(network.getOutputsInfo());
    return {SUCCESS, ""};
}

QuavinStatus QuavinOpenVino::unloadImpl() {
    reader_.reset();
    networkRead_ = false;
    closePools();
    releaseMetadata();
    return {SUCCESS, ""};
}

void QuavinOpenVino::openPools(const InferenceEngine::OutputsDataMap& outputsInfo) {
    closePools();
    for (const auto& [name, data] : outputsInfo) {
        pools_.emplace(name, internal::OutputPool::make());
    }
}

void QuavinOpenVino::closePools() noexcept {
    for (const auto& [name, pool] : pools_) {
        pool->close();
    }
    pools_.clear();
}

}  // namespace VelmoraQuavin
