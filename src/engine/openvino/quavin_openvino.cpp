#include "engine/openvino/quavin_openvino.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "core/diagnostics.h"
#include "engine/openvino/cached_network.h"
#include "engine/openvino/compiling.h"
#include "engine/openvino/network_reading.h"
#include "engine/openvino/network_settings.h"
#include "engine/openvino/runtime_libraries.h"
#include "package/manifest/metadata_access.h"
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

// The ports of a compiled network, for a model of its own: predictions set their precisions.
InferenceEngine::InputsDataMap ownInputs(const InferenceEngine::ExecutableNetwork& network) {
    InferenceEngine::InputsDataMap inputs;
    for (const auto& [name, info] : network.GetInputsInfo()) {
        auto own = std::make_shared<InferenceEngine::InputInfo>(*info);
        own->setInputData(std::make_shared<InferenceEngine::Data>(*info->getInputData()));
        inputs.emplace(name, std::move(own));
    }
    return inputs;
}

InferenceEngine::OutputsDataMap ownOutputs(const InferenceEngine::ExecutableNetwork& network) {
    InferenceEngine::OutputsDataMap outputs;
    for (const auto& [name, data] : network.GetOutputsInfo()) {
        outputs.emplace(name, std::make_shared<InferenceEngine::Data>(*data));
    }
    return outputs;
}

// A host may free a package in memory once its load has failed: the model lets go of it then.
class BorrowedNetwork {
public:
    using Reader = std::shared_ptr<InferenceEngine::ICNNNetReader>;

    BorrowedNetwork(const ModelMetadata& metadata, Reader& reader, bool& isRead,
                    InferenceEngine::ExecutableNetwork& compiled)
        : borrowed_(internal::MetadataAccess::isInMemory(metadata)),
          reader_(reader),
          isRead_(isRead),
          compiled_(compiled) {}
    BorrowedNetwork(const BorrowedNetwork&) = delete;
    BorrowedNetwork& operator=(const BorrowedNetwork&) = delete;
    ~BorrowedNetwork() {
        if (borrowed_) {
            reader_.reset();
            isRead_ = false;
            compiled_ = InferenceEngine::ExecutableNetwork();
        }
    }
    void keep() noexcept { borrowed_ = false; }

private:
    bool borrowed_;
    Reader& reader_;
    bool& isRead_;
    InferenceEngine::ExecutableNetwork& compiled_;
};

void copyPrecisions(const internal::InputPorts& from, const InferenceEngine::InputsDataMap& to) {
    for (const internal::InputPort& port : from) {
        const auto input = to.find(port.name);
        if (input != to.end()) {
            input->second->setPrecision(port.info->getPrecision());
        }
    }
}

}  // namespace

QuavinOpenVino::QuavinOpenVino(const String& name, const Device& /*device*/,
                               const EngineOptions& options)
    : QuavinModel(name, QuavinModelType::Openvino), options_(options), core_(std::string()) {}

QuavinOpenVino::QuavinOpenVino(const String& name, const EngineOptions& options,
                               InferenceEngine::Core core)
    : QuavinModel(name, QuavinModelType::Openvino), options_(options), core_(std::move(core)) {}

QuavinOpenVino::~QuavinOpenVino() {
    internal::closePools(outputs_);
}

String QuavinOpenVino::getName() const {
    return QuavinModel::getName();
}

QuavinStatus QuavinOpenVino::prepareImpl() {
    return {SUCCESS, ""};
}

QuavinStatus QuavinOpenVino::loadImpl(const std::vector<ModelComponent>& components) {
    const auto source = componentSource(*getMetadata());
    const auto entries = internal::collectNetworkComponents(components, *source);
    QuavinStatus status = internal::checkNetworkComponents(entries);
    if (!status.ok()) {
        return status;
    }
    const internal::NetworkComponents files{*source, entries[0], entries[1]};
    if (cameCompiled_ && !asksForOtherPrecisions()) {
        return openRequest(source->name());
    }
    if (inferRequest_ != nullptr) {
        core_ = InferenceEngine::Core(std::string());  // clones may share the earlier one
    }
    // What is cached must be what was hashed, so it is read, not mapped.
    internal::StoredNetwork stored(files, options_.mapWeights && options_.cacheDirectory.empty());
    std::optional<internal::CachedNetwork> cached;
    BorrowedNetwork borrowed(*getMetadata(), reader_, networkRead_, network_);
    if (!networkRead_) {
        networkSecured_ = files.areSecret();
        if (!cameCompiled_) {
            cached.emplace(options_, stored);
            if (takeCached(*cached, source->name())) {
                borrowed.keep();
                return {SUCCESS, ""};
            }
        }
        internal::readNetwork(reader_, stored);
        networkRead_ = true;
    }
    const InferenceEngine::CNNNetwork network(reader_);
    if (cameCompiled_) {
        // Predictions set the precisions of the model's own ports.
        copyPrecisions(inputs_, network.getInputsInfo());
        cameCompiled_ = false;
    }
    network_ = compile(core_, network, options_, source->name());
    status = openRequest(source->name());
    if (status.ok()) {
        setPorts(network.getInputsInfo(), network.getOutputsInfo());
        if (cached) {
            cached->store(network_);
        }
        borrowed.keep();
    }
    return status;
}

QuavinStatus QuavinOpenVino::unloadImpl() {
    forgetNetwork();
    setPorts({}, {});
    releaseMetadata();
    return {SUCCESS, ""};
}

void QuavinOpenVino::forgetNetwork() noexcept {
    reader_.reset();
    networkRead_ = false;
    cameCompiled_ = false;
}

EngineInfo QuavinOpenVino::engineInfo() const {
    return internal::makeEngineInfo(core_, kEngineDevice, settings_);
}

std::shared_ptr<QuavinModel> QuavinOpenVino::clone() const {
    auto copy = std::make_shared<QuavinOpenVino>(getName(), options_, core_);
    copy->networkSecured_ = networkSecured_;
    copy->copyVerification(*this);
    const QuavinStatus status =
        copy->takeCompiled(network_, internal::packageTitle(*getMetadata()));
    if (!status.ok()) {
        throw MLFrameworkException(status.getDescription());
    }
    copy->copyLoaded(*this);
    return copy;
}

bool QuavinOpenVino::takeCached(internal::CachedNetwork& cached, const String& package) noexcept {
    try {
        const auto network = cached.find(core_);
        return network && takeCompiled(*network, package).ok();
    } catch (...) {
        cached.report("the engine cannot use the entry");
        return false;
    }
}

QuavinStatus QuavinOpenVino::takeCompiled(const InferenceEngine::ExecutableNetwork& network,
                                          const String& package) {
    network_ = network;
    QuavinStatus status = openRequest(package);
    if (status.ok()) {
        setPorts(ownInputs(network_), ownOutputs(network_));
        cameCompiled_ = true;
    }
    return status;
}

bool QuavinOpenVino::asksForOtherPrecisions() const {
    const auto compiled = network_.GetInputsInfo();
    return std::any_of(inputs_.begin(), inputs_.end(), [&](const internal::InputPort& port) {
        return port.info->getPrecision() != compiled.at(port.name)->getPrecision();
    });
}

QuavinStatus QuavinOpenVino::openRequest(const String& package) {
    inferRequest_ = network_.CreateInferRequestPtr();
    if (inferRequest_ == nullptr || !*inferRequest_) {
        internal::diagnose([&package] {
            return "loading the package " + internal::inQuotes(package) +
                   ": the engine compiled the network and made no request for it";
        });
        return {ML_FRAMEWORK_ERROR, "OpenVino unable to load model : "};
    }
    settings_ = internal::settingsOf(network_);
    return {SUCCESS, ""};
}

void QuavinOpenVino::setPorts(const InferenceEngine::InputsDataMap& inputs,
                              const InferenceEngine::OutputsDataMap& outputs) {
    internal::closePools(outputs_);
    inputs_ = internal::makeInputPorts(inputs);
    outputs_ = internal::makeOutputPorts(outputs);
}

}  // namespace VelmoraQuavin
