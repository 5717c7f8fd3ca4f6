#pragma once

#include <memory>
#include <vector>

#include "package/source/network_components.h"
#include "quavin/engine_info.h"
#include "quavin/feature.h"
#include "quavin/metadata.h"
#include "quavin/model.h"

namespace VelmoraQuavin::internal {

/// What goes into a network and what comes out, each port as a required tensor feature.
struct NetworkPorts {
    std::vector<ModelFeatureDescriptor> inputs;
    std::vector<ModelFeatureDescriptor> outputs;
};

/// What an engine gives to the library. There is one object for each, which any thread may call.
class Engine {
public:
    Engine() = default;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    virtual QuavinModelType type() const noexcept = 0;
    /// A model of this engine, not loaded yet.
    /// @throws std::exception if the engine cannot start.
    virtual std::shared_ptr<QuavinModel> makeModel(const String& name,
                                                   const Device& device) const = 0;
    /// Reads a network without compiling it.
    /// @throws std::exception if a component cannot be read, or is no network.
    virtual NetworkPorts describe(const NetworkComponents& network) const = 0;
    /// What a model that is loaded now would run on.
    /// @throws std::exception if the engine cannot start, and if memory runs out.
    virtual EngineInfo info() const = 0;

protected:
    ~Engine() = default;
};

/// The engines of this build, the preferred one first. Never empty.
const std::vector<const Engine*>& builtInEngines();

/// The engine for a package: one that it has a target for, and that a host asks for. Diagnostics
/// say why there is none.
/// @param wanted QuavinModelType::Undefined leaves the choice to the library.
/// @return null if there is none.
const Engine* chooseEngine(const ModelMetadata& metadata, QuavinModelType wanted);

}  // namespace VelmoraQuavin::internal
