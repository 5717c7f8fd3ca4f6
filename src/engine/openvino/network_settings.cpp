#include "engine/openvino/network_settings.h"

#include <charconv>
#include <new>

namespace VelmoraQuavin::internal {
namespace {

using InferenceEngine::Parameter;

// An engine may reject a query with any kind of exception, and which names it knows depends on its
// release.
template <typename Question>
Parameter answerTo(const Question& question) {
    try {
        return question();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        return {};
    }
}

std::string textOf(const Parameter& value) {
    return value.is<std::string>() ? value.as<std::string>() : std::string();
}

int numberOf(const Parameter& value) {
    const std::string text = textOf(value);
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::vector<String> listOf(const Parameter& value) {
    if (!value.is<std::vector<std::string>>()) {
        return {};
    }
    const auto& texts = value.as<std::vector<std::string>>();
    return {texts.begin(), texts.end()};
}

// Engines from 2020 report only whether they use bfloat16 instead of single precision.
std::string precisionOf(const InferenceEngine::ExecutableNetwork& network) {
    const Parameter hint = answerTo([&] { return network.GetConfig("INFERENCE_PRECISION_HINT"); });
    if (!hint.empty()) {
        return textOf(hint);
    }
    const std::string bfloat16 =
        textOf(answerTo([&] { return network.GetConfig("ENFORCE_BF16"); }));
    return bfloat16 == "YES" ? "bf16" : bfloat16 == "NO" ? "f32" : "";
}

const char* runtimeVersion() {
    const InferenceEngine::Version* const version = InferenceEngine::GetInferenceEngineVersion();
    return version == nullptr || version->buildNumber == nullptr ? "" : version->buildNumber;
}

}  // namespace

NetworkSettings settingsOf(const InferenceEngine::ExecutableNetwork& network) {
    const auto number = [&](const char* name) {
        return numberOf(answerTo([&] { return network.GetConfig(name); }));
    };
    return {precisionOf(network), number("CPU_THREADS_NUM"), number("CPU_THROUGHPUT_STREAMS")};
}

std::vector<String> capabilitiesOf(const InferenceEngine::Core& core, const std::string& device) {
    return listOf(answerTo([&] { return core.GetMetric(device, "OPTIMIZATION_CAPABILITIES"); }));
}

EngineInfo makeEngineInfo(const InferenceEngine::Core& core, const std::string& device,
                          const NetworkSettings& settings) {
    const auto metric = [&](const char* name) {
        return answerTo([&] { return core.GetMetric(device, name); });
    };
    EngineInfo info;
    info.runtimeVersion = runtimeVersion();
    info.device = device;
    info.deviceName = textOf(metric("FULL_DEVICE_NAME"));
    info.precision = settings.precision;
    info.threads = settings.threads;
    info.streams = settings.streams;
    info.capabilities = capabilitiesOf(core, device);
    return info;
}

}  // namespace VelmoraQuavin::internal
