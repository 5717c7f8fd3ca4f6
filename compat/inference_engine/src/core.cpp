#include "ie/core.hpp"

#include "exported_network.hpp"
#include "failure.hpp"
#include "ie/exception.hpp"
#include "properties.hpp"
#include "runtime_core.hpp"
#include "runtime_network.hpp"

namespace InferenceEngine {
namespace {

/** Runs an operation, turning its failures into exceptions of the interface. */
template <class Operation>
auto translated(Operation&& operation) {
    try {
        return operation();
    } catch (const runtime::Failure& failure) {
        std::string text = failure.what();
        details::extract_exception(failure.status(), text.data());
    }
}

}  // namespace

class Core::Impl {
public:
    explicit Impl(const std::string& configFile) : core_(runtime::sharedCore()) {
        if (!configFile.empty()) {
            throw runtime::Failure(NOT_IMPLEMENTED, "Configuration files are not supported");
        }
    }

    ExecutableNetwork load(ICNNNetwork& network, const std::string& device,
                           const std::map<std::string, std::string>& config) {
        auto* const read = dynamic_cast<runtime::RuntimeNetwork*>(&network);
        if (read == nullptr) {
            throw runtime::Failure(NOT_IMPLEMENTED, "The network was not read by this runtime");
        }
        apply(device, config);
        return ExecutableNetwork(read->load(*core_, device));
    }

    ExecutableNetwork import(std::istream& stream, const std::string& device,
                             const std::map<std::string, std::string>& config) {
        apply(device, config);
        return ExecutableNetwork(runtime::importNetwork(*core_, device, stream));
    }

    Parameter property(const std::string& device, const std::string& name) const {
        prepare(device);
        return runtime::propertyOf(*core_, device, name);
    }

private:
    void apply(const std::string& device, const std::map<std::string, std::string>& config) {
        core_ = runtime::sharedCore(device, config);
        hasSettings_ = !config.empty();
        prepare(device);
    }

    void prepare(const std::string& device) const {
        if (!hasSettings_) {
            runtime::useOwnDefaults(*core_, device);
        }
    }

    // Of what was loaded last: while it is held, networks loaded with the same settings share it.
    std::shared_ptr<ov_core_t> core_;
    bool hasSettings_ = false;
};

Core::Core(const std::string& configFile)
    : impl_(translated([&] { return std::make_shared<Impl>(configFile); })) {}

ExecutableNetwork Core::LoadNetwork(CNNNetwork network, const std::string& device,
                                    const std::map<std::string, std::string>& config) {
    return translated([&] { return impl_->load(network, device, config); });
}

ExecutableNetwork Core::ImportNetwork(std::istream& networkModel, const std::string& deviceName,
                                      const std::map<std::string, std::string>& config) {
    return translated([&] { return impl_->import(networkModel, deviceName, config); });
}

Parameter Core::GetConfig(const std::string& device, const std::string& name) const {
    return translated([&] { return impl_->property(device, name); });
}

Parameter Core::GetMetric(const std::string& device, const std::string& name) const {
    return translated([&] { return impl_->property(device, name); });
}

}  // namespace InferenceEngine
