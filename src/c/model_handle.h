#pragma once

#include <memory>
#include <string>

#include "c/handle_table.h"
#include "c/input_features.h"
#include "c/port.h"
#include "quavin/c.h"
#include "quavin/model.h"

namespace VelmoraQuavin::internal {

/// What a quavin_model stands for: a model, and what it was when the handle was made, so that the
/// texts stay valid when it is unloaded.
class ModelHandle {
public:
    /// @param model not null.
    explicit ModelHandle(std::shared_ptr<QuavinModel> model);

    const std::shared_ptr<QuavinModel>& model() const { return model_; }
    const Ports& inputs() const { return inputs_; }
    const Ports& outputs() const { return outputs_; }
    InputFeatures& features() { return features_; }
    /// Points into this object.
    quavin_metadata metadata() const;

private:
    ModelHandle(std::shared_ptr<QuavinModel> model, const ModelTarget& target);

    std::shared_ptr<QuavinModel> model_;
    std::string id_;
    std::string name_;
    std::string author_;
    std::string description_;
    std::string sdkVersion_;
    int version_ = 0;
    Ports inputs_;
    Ports outputs_;
    InputFeatures features_;
};

template <>
struct HandleKind<quavin_model> {
    using Object = ModelHandle;
    static constexpr const char* kName = "a model";
    static constexpr const char* kArgument = "model";
};

}  // namespace VelmoraQuavin::internal
