#include "engine/openvino/compiling.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/openvino/network_settings.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {
namespace {

// A setting of the engine, under its name of 2020, and the option that it comes from.
struct Setting {
    const char* name;
    std::string value;
    const char* option;
};

// Asked to compute in bfloat16, an engine of 2020 fails on processors that cannot.
bool hasFasterPrecision(const InferenceEngine::Core& core) {
    const std::vector<String> capabilities = capabilitiesOf(core, kEngineDevice);
    return std::any_of(capabilities.begin(), capabilities.end(), [](const String& capability) {
        return capability == "BF16" || capability == "FP16";
    });
}

std::vector<Setting> settingsFor(const EngineOptions& options, const InferenceEngine::Core& core) {
    std::vector<Setting> settings;
    if (options.precision == EngineOptions::Precision::Fastest && hasFasterPrecision(core)) {
        settings.push_back({"ENFORCE_BF16", "YES", "precision"});
    }
    if (options.threads != 0) {
        settings.push_back({"CPU_THREADS_NUM", std::to_string(options.threads), "threads"});
    }
    if (options.hint == EngineOptions::Hint::Throughput) {
        settings.push_back({"CPU_THROUGHPUT_STREAMS", "CPU_THROUGHPUT_AUTO", "hint"});
    }
    return settings;
}

}  // namespace

InferenceEngine::ExecutableNetwork compileNetwork(InferenceEngine::Core& core,
                                                  const InferenceEngine::CNNNetwork& network,
                                                  const EngineOptions& options) {
    const std::vector<Setting> settings = settingsFor(options, core);
    std::map<std::string, std::string> config;
    for (const Setting& setting : settings) {
        config.emplace(setting.name, setting.value);
    }
    try {
        return core.LoadNetwork(network, kEngineDevice, config);
    } catch (const InferenceEngine::ParameterMismatch& refusal) {
        // The text names the setting that was refused.
        for (const Setting& setting : settings) {
            if (std::string_view(refusal.what()).find(setting.name) != std::string_view::npos) {
                throw InvalidArgumentsException(std::string("The engine refuses EngineOptions::") +
                                                setting.option + ": " + refusal.what());
            }
        }
        throw;
    }
}

}  // namespace VelmoraQuavin::internal
