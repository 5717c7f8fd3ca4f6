#pragma once

#include <memory>

#include "quavin/engine_info.h"
#include "quavin/model.h"

namespace VelmoraQuavin::internal {

constexpr const char* kNoModelLoaded = "There is no model loaded";

/// What a model of the library's own engines can do beyond QuavinModel. Separate from it, because
/// models defined by hosts are built against QuavinModel's virtual functions.
class EngineModel {
public:
    EngineModel() = default;
    EngineModel(const EngineModel&) = delete;
    EngineModel& operator=(const EngineModel&) = delete;
    /// What the loaded network runs on; called only on loaded models.
    /// @throws std::exception if the engine fails, or if memory runs out.
    virtual EngineInfo engineInfo() const = 0;
    /// Another loaded model over the same compiled network; called only on loaded models.
    /// @throws std::exception if the engine fails, or if memory runs out.
    virtual std::shared_ptr<QuavinModel> clone() const = 0;

protected:
    ~EngineModel() = default;
};

}  // namespace VelmoraQuavin::internal
