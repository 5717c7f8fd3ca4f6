#include <type_traits>

#include "engine/engine.h"
#include "engine/openvino/describe_network.h"
#include "engine/openvino/openvino_engine_info.h"
#include "engine/openvino/quavin_openvino.h"

namespace VelmoraQuavin::internal {
namespace {

class OpenVinoEngine : public Engine {
public:
    QuavinModelType type() const noexcept override { return QuavinModelType::Openvino; }
    std::shared_ptr<QuavinModel> makeModel(const String& name, const Device& device,
                                           const EngineOptions& options) const override {
        return std::make_shared<QuavinOpenVino>(name, device, options);
    }
    NetworkPorts describe(const NetworkComponents& network) const override {
        return describeOpenVinoNetwork(network);
    }
    EngineInfo info(const EngineOptions& options) const override {
        return openVinoEngineInfo(options);
    }
};

}  // namespace

EngineList builtInEngines() noexcept {
    static_assert(std::is_trivially_destructible_v<OpenVinoEngine>);
    static const OpenVinoEngine openVino;
    static const std::array<const Engine*, 1> engines{&openVino};
    return EngineList(engines);
}

}  // namespace VelmoraQuavin::internal
