#pragma once

#include "quavin/engine_info.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {

/// A model that knows what computes its predictions. Separate from QuavinModel, because models
/// defined by hosts are built against QuavinModel's virtual functions.
class EngineInfoSource {
public:
    EngineInfoSource() = default;
    EngineInfoSource(const EngineInfoSource&) = delete;
    EngineInfoSource& operator=(const EngineInfoSource&) = delete;
    /// What the loaded network runs on; called only on loaded models.
    /// @throws std::exception if the engine fails, or if memory runs out.
    virtual EngineInfo engineInfo() const = 0;

protected:
    ~EngineInfoSource() = default;
};

}  // namespace VelmoraQuavin::internal
