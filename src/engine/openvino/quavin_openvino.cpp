#include "engine/openvino/quavin_openvino.h"

#include "core/diagnostics.h"
#include "engine/openvino/engine_device.h"
#include "engine/openvino/network_reading.h"
#include "engine/openvino/runtime_libraries.h"
#include "quavin/status.h"

namespace VelmoraQuavin {
namespace {

using internal::kEngineDevice;
using internal::NetworkComponentEntry;

InferenceEngine::ExecutableNetwork compile(InferenceEngine::Core& core,
                                           const InferenceEngine::CNNNetwork& network,
                                           const Filepath& rootDir) {
    try {
        return core.LoadNetwork(network, kEngineDevice, {});
    } catch (...) {
        internal::diagnoseMissingLibraries("loading the package", rootDir.c_str());
        throw;
    }
}

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
    const Filepath rootDir = getMetadata()->getRootDir();
    const std::vector<NetworkComponentEntry> entries =
        internal::collectNetworkComponents(components, rootDir);
    QuavinStatus status = internal::checkNetworkComponents(entries);
    if (!status.ok()) {
        return status;
    }
    if (!networkRead_) {
        internal::readNetwork(reader_, entries[0], entries[1]);
        networkRead_ = true;
        networkSecured_ = entries[0].isSecured() || entries[1].isSecured();
    }
    const InferenceEngine::CNNNetwork network(reader_);
    InferenceEngine::ExecutableNetwork loaded = compile(core_, network, rootDir);
    inferRequest_ = loaded.CreateInferRequestPtr();
    if (inferRequest_ == nullptr || !*inferRequest_) {
        internal::diagnose([&rootDir] {
            return "loading the package " + internal::inQuotes(rootDir.c_str()) +
                   ": the engine compiled the network and made no request for it";
        });
        return {ML_FRAMEWORK_ERROR, "OpenVino unable to load model : "};
    }
    // Asked now, since the executable network is not kept.
    settings_ = internal::settingsOf(loaded);
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

EngineInfo QuavinOpenVino::engineInfo() const {
    return internal::makeEngineInfo(core_, kEngineDevice, settings_);
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
