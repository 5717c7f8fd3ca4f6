#pragma once

#include "quavin/engine_info.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {

/// A model that knows what computes its predictions. Apart from QuavinModel, whose virtual
/// operations are those that hosts' own models are built against.
class EngineInfoSource {
public:
    EngineInfoSource() = default;
    EngineInfoSource(const EngineInfoSource&) = delete;
    EngineInfoSource& operator=(const EngineInfoSource&) = delete;
    /// What the loaded network runs on; asked of loaded models only.
    /// @throws std::exception as the engine does, and where memory runs out.
    virtual EngineInfo engineInfo() const = 0;

protected:
    ~EngineInfoSource() = default;
};

}  // namespace VelmoraQuavin::internal
