#include "quavin/client.h"

#include "client/client_texts.h"
#include "core/logging_hub.h"

namespace VelmoraQuavin {
namespace {

void installLogger(const std::shared_ptr<ILogProcessor>& logger) {
    // The hub is gone where a host switches the library on or off while the process ends.
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
    initialized_ = true;
    config_.SetLogger(config.GetLogger());
    installLogger(config_.GetLogger());
    return {SUCCESS, ""};
}

bool QuavinClient::isInitialized() {
    return initialized_;
}

void QuavinClient::terminate() {
    if (initialized_) {
        initialized_ = false;
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
    return QuavinModelType::Openvino;
}

std::map<QuavinModelType, std::vector<Device>> QuavinClient::getDevices() {
    return {};
}

RuntimeStatus QuavinClient::queryRuntimeStatus() const {
    return initialized_ ? modelManager_.getRuntimeStatus() : RuntimeStatus({});
}

}  // namespace VelmoraQuavin
