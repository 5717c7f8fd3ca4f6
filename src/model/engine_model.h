#pragma once

#include <memory>
#include <utility>

#include "package/source/component_source.h"
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

    /// Spares the next load the verification of its package.
    /// @param package the source of exactly what will be loaded, just made.
    void setVerified(std::shared_ptr<const ComponentSource> package) noexcept {
        package_ = std::move(package);
    }
    /// Begins a load while keys are trusted: verifies the package unless that has been done, and
    /// makes the engine forget what none of these keys vouched for.
    /// @throws Exception as makeComponentSource() does; the load must not go on then.
    void beginVerifiedLoad(const ModelMetadata& metadata);
    /// Ends what beginVerifiedLoad() began, whether or not the load succeeded.
    void endVerifiedLoad() noexcept { package_.reset(); }

protected:
    ~EngineModel() = default;

    /// Drops a network that was read, so that a load that is under way reads its own.
    virtual void forgetNetwork() noexcept = 0;
    /// For loadImpl(): where the components come from.
    /// @throws Exception as makeComponentSource() does.
    std::shared_ptr<const ComponentSource> componentSource(const ModelMetadata& metadata) const;
    /// For clones, which share a network that was verified.
    void copyVerification(const EngineModel& original) { verified_ = original.verified_; }

private:
    std::shared_ptr<const ComponentSource> package_;  // of a load that is under way, once verified
    VerifiedManifest verified_;  // of the last verified load; its keys vouch for what was read
};

}  // namespace VelmoraQuavin::internal
