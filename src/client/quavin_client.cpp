#include "quavin/client.h"

#include <utility>

#include "client/client_texts.h"
#include "core/diagnostics.h"
#include "core/logging_hub.h"
#include "engine/engine.h"
#include "package/signature/trusted_keys.h"

namespace VelmoraQuavin {
namespace {

void installLogger(const std::shared_ptr<ILogProcessor>& logger) {
    // The hub is gone if a host turns the library on or off during process exit.
    if (internal::LoggingHub* hub = internal::LoggingHub::find()) {
        hub->setProcessor(logger);
    }
}

}  // namespace

bool QuavinClient::initialized_ = false;
QuavinConfig QuavinClient::config_;

QuavinClient::QuavinClient() = default;

QuavinClient::~QuavinClient() = default;

QuavinStatus QuavinClient::init(const QuavinConfig& config) {
    if (initialized_) {
        return {};
    }
    internal::SharedTrustedKeys keys = internal::readTrustedKeys(config.GetTrustedKeys());
    config_ = config;
    // From here on nothing fails, so the library is on with all of the configuration or as it was.
    installLogger(config_.GetLogger());
    internal::setDiagnostics(config_.GetDiagnostics());
    internal::setTrustedKeys(std::move(keys));
    initialized_ = true;
    return {SUCCESS, ""};
}

bool QuavinClient::isInitialized() {
    return initialized_;
}

void QuavinClient::terminate() {
    if (initialized_) {
        initialized_ = false;
        internal::setDiagnostics(false);
        installLogger(nullptr);
    }
}

QuavinClient& QuavinClient::instance() {
    if (!initialized_) {
        throw Exception(internal::kNotInitialized);
    }
    static QuavinClient client;
    return client;
}

QuavinModelType QuavinClient::getEngineType() {
    return internal::builtInEngines().preferred().type();
}

std::map<QuavinModelType, std::vector<Device>> QuavinClient::getDevices() {
    return {};
}

QuavinStatus QuavinClient::getEngineInfo(EngineInfo& info) {
    try {
        const EngineOptions options = getEngineOptions();
        internal::requireMeaningful(options);
        info = internal::builtInEngines().preferred().info(options);
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

EngineOptions QuavinClient::getEngineOptions() {
    return initialized_ ? config_.GetEngineOptions() : EngineOptions();
}

RuntimeStatus QuavinClient::queryRuntimeStatus() const {
    return initialized_ ? modelManager_.getRuntimeStatus() : RuntimeStatus({});
}

QuavinStatus QuavinConfig::load() {
    return {};
}

QuavinClientInitTerm::QuavinClientInitTerm(const QuavinConfig& config) {
    if (!QuavinClient::init(config).ok()) {
        throw Exception("Quavin client failed to initialize");
    }
}

QuavinClientInitTerm::~QuavinClientInitTerm() {
    QuavinClient::terminate();
}

}  // namespace VelmoraQuavin
