#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include "package/source/network_components.h"
#include "quavin/engine_info.h"
#include "quavin/engine_options.h"
#include "quavin/feature.h"
#include "quavin/metadata.h"
#include "quavin/model.h"

namespace VelmoraQuavin::internal {

/// A network's inputs and outputs, each as a required tensor feature.
struct NetworkPorts {
    std::vector<ModelFeatureDescriptor> inputs;
    std::vector<ModelFeatureDescriptor> outputs;
};

/// What the library needs from an engine. There is one object per engine, which any thread may use.
class Engine {
public:
    Engine() = default;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    virtual QuavinModelType type() const noexcept = 0;
    /// A model of this engine, not loaded yet. Options that the engine refuses make its load return
    /// INVALID_ARGUMENTS.
    /// @param options passed requireMeaningful().
    /// @throws std::exception if the engine cannot start.
    virtual std::shared_ptr<QuavinModel> makeModel(const String& name, const Device& device,
                                                   const EngineOptions& options) const = 0;
    /// Reads a network without compiling it.
    /// @throws std::exception if a component cannot be read, or is not a network.
    virtual NetworkPorts describe(const NetworkComponents& network) const = 0;
    /// What a model loaded now with these options would run on.
    /// @throws InvalidArgumentsException if the engine refuses an option.
    /// @throws std::exception if the engine cannot start, or if memory runs out.
    virtual EngineInfo info(const EngineOptions& options) const = 0;

protected:
    ~Engine() = default;
};

/// The engines of this build, the preferred one first. Never empty.
class EngineList {
public:
    /// @param engines live until the process ends, and are never destroyed: hosts may use the
    ///        library while the process exits.
    template <std::size_t count>
    explicit EngineList(const std::array<const Engine*, count>& engines) noexcept
        : begin_(engines.data()), end_(engines.data() + count) {}

    const Engine* const* begin() const noexcept { return begin_; }
    const Engine* const* end() const noexcept { return end_; }
    const Engine& preferred() const noexcept { return **begin_; }

private:
    const Engine* const* begin_;
    const Engine* const* end_;
};
EngineList builtInEngines() noexcept;

/// @throws InvalidArgumentsException, naming the option, if one has a value without a meaning.
void requireMeaningful(const EngineOptions& options);

/// Chooses the engine for a package: the package must have a target for it, and the host must
/// accept it. If there is none, diagnostics say why.
/// @param wanted QuavinModelType::Undefined leaves the choice to the library.
/// @return null if there is none.
const Engine* chooseEngine(const ModelMetadata& metadata, QuavinModelType wanted);

}  // namespace VelmoraQuavin::internal
