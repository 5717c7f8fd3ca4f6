#include "engine/openvino/quavin_openvino.h"

#include "core/diagnostics.h"
#include "engine/openvino/compiling.h"
#include "engine/openvino/network_reading.h"
#include "engine/openvino/network_settings.h"
#include "engine/openvino/runtime_libraries.h"
#include "quavin/status.h"

namespace VelmoraQuavin {
namespace {

using internal::kEngineDevice;

InferenceEngine::ExecutableNetwork compile(InferenceEngine::Core& core,
                                           const InferenceEngine::CNNNetwork& network,
                                           const EngineOptions& options, const String& package) {
    try {
        return internal::compileNetwork(core, network, options);
    } catch (...) {
        internal::diagnoseMissingLibraries("loading the package", package);
        throw;
    }
}

}  // namespace

QuavinOpenVino::QuavinOpenVino(const String& name, const Device& /*device*/,
                               const EngineOptions& options)
    : QuavinModel(name, QuavinModelType::Openvino), options_(options), core_(std::string()) {}

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
    const auto source = internal::makeComponentSource(*getMetadata());
    const auto entries = internal::collectNetworkComponents(components, *source);
    QuavinStatus status = internal::checkNetworkComponents(entries);
    if (!status.ok()) {
        return status;
    }
    if (!networkRead_) {
        const internal::NetworkComponents files{*source, entries[0], entries[1]};
        internal::readNetwork(reader_, files, options_.mapWeights);
        networkRead_ = true;
        networkSecured_ = files.areSecured();
    }
    const InferenceEngine::CNNNetwork network(reader_);
    InferenceEngine::ExecutableNetwork loaded = compile(core_, network, options_, source->name());
    inferRequest_ = loaded.CreateInferRequestPtr();
    if (inferRequest_ == nullptr || !*inferRequest_) {
        internal::diagnose([&source] {
            return "loading the package " + internal::inQuotes(source->name()) +
                   ": the engine compiled the network and made no request for it";
        });
        return {ML_FRAMEWORK_ERROR, "OpenVino unable to load model : "};
    }
    // Queried now, since the executable network is not kept.
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
