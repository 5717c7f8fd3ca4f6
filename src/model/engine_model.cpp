#include "model/engine_model.h"

#include "package/manifest/metadata_access.h"

namespace VelmoraQuavin::internal {

void EngineModel::beginVerifiedLoad(const ModelMetadata& metadata) {
    if (package_ == nullptr) {
        package_ = makeComponentSource(metadata, verified_);
    }
    if (!package_->isVerified()) {
        return;  // the manifest was, and there is nothing else left of the package
    }
    const auto keys = package_->verifiedBy();
    if (keys != verified_.keys) {
        forgetNetwork();
    }
    verified_ = {keys, MetadataAccess::manifest(metadata)};
}

std::shared_ptr<const ComponentSource> EngineModel::componentSource(
    const ModelMetadata& metadata) const {
    return package_ != nullptr ? package_ : makeComponentSource(metadata);
}

}  // namespace VelmoraQuavin::internal
