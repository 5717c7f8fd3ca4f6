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

// Asked to compute in bfloat16, an engine of 2020 fails on processors that cannot.
bool hasFasterPrecision(const InferenceEngine::Core& core) {
    const std::vector<String> capabilities = capabilitiesOf(core, kEngineDevice);
    return std::any_of(capabilities.begin(), capabilities.end(), [](const String& capability) {
        return capability == "BF16" || capability == "FP16";
    });
}

// Calls the engine with settings; a refusal names the option that it is about.
template <typename Call>
InferenceEngine::ExecutableNetwork callWith(const std::vector<EngineSetting>& settings,
                                            const Call& call) {
    std::map<std::string, std::string> config;
    for (const EngineSetting& setting : settings) {
        config.emplace(setting.name, setting.value);
    }
    try {
        return call(config);
    } catch (const InferenceEngine::ParameterMismatch& refusal) {
        // The text names the setting that was refused.
        for (const EngineSetting& setting : settings) {
            if (std::string_view(refusal.what()).find(setting.name) != std::string_view::npos) {
                throw InvalidArgumentsException(std::string("The engine refuses EngineOptions::") +
                                                setting.option + ": " + refusal.what());
            }
        }
        throw;
    }
}

// Engines that import from and export to files alone have no such call; the second overloads then
// take its place.
template <typename Core, typename Config>
auto import(Core& core, std::istream& stream, const Config& config, int /*preferred*/)
    -> decltype(core.ImportNetwork(stream, kEngineDevice, config)) {
    return core.ImportNetwork(stream, kEngineDevice, config);
}
template <typename Core, typename Config>
InferenceEngine::ExecutableNetwork import(Core& /*core*/, std::istream& /*stream*/,
                                          const Config& /*config*/, long /*otherwise*/) {
    throw Exception("The engine cannot import networks from memory");
}
template <typename Network>
auto exportTo(Network& network, std::ostream& stream, int /*preferred*/)
    -> decltype(network.Export(stream)) {
    return network.Export(stream);
}
template <typename Network>
void exportTo(Network& /*network*/, std::ostream& /*stream*/, long /*otherwise*/) {
    throw Exception("The engine cannot export networks to memory");
}

}  // namespace

std::vector<EngineSetting> engineSettings(const EngineOptions& options,
                                          const InferenceEngine::Core& core) {
    std::vector<EngineSetting> settings;
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

InferenceEngine::ExecutableNetwork compileNetwork(InferenceEngine::Core& core,
                                                  const InferenceEngine::CNNNetwork& network,
                                                  const EngineOptions& options) {
    return callWith(engineSettings(options, core), [&](const auto& config) {
        return core.LoadNetwork(network, kEngineDevice, config);
    });
}

InferenceEngine::ExecutableNetwork importNetwork(InferenceEngine::Core& core, std::istream& stream,
                                                 const EngineOptions& options) {
    return callWith(engineSettings(options, core),
                    [&](const auto& config) { return import(core, stream, config, 0); });
}

void exportNetwork(InferenceEngine::ExecutableNetwork& network, std::ostream& stream) {
    exportTo(network, stream, 0);
}

}  // namespace VelmoraQuavin::internal
