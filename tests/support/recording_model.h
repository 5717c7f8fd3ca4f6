#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "quavin/model.h"

namespace VelmoraQuavin::testing {

/// A model without an engine: records which hooks were called, and returns the configured answers.
class RecordingModel : public QuavinModel {
public:
    using Features = std::vector<std::shared_ptr<QuavinFeature>>;

    RecordingModel() : QuavinModel("recording", QuavinModelType::Openvino) {}
    using QuavinModel::QuavinModel;

    using QuavinModel::isLoaded;
    using QuavinModel::releaseMetadata;

    QuavinStatus prepareAnswer{SUCCESS, ""};
    QuavinStatus loadAnswer{SUCCESS, ""};
    QuavinStatus unloadAnswer{SUCCESS, ""};
    QuavinStatus predictAnswer{SUCCESS, ""};
    /// Called within the hooks they are named after.
    std::function<void()> duringLoad = [] {};
    std::function<void()> duringPredict = [] {};

    /// The names of the hooks, in the order of their calls.
    mutable std::vector<std::string> calls;
    /// The last argument of loadImpl().
    std::vector<ModelComponent> components;
    /// The addresses of the last predictImpl() call's features, and its option.
    mutable const Features* inputs = nullptr;
    mutable Features* outputs = nullptr;
    mutable int option = -1;

protected:
    QuavinStatus predictImpl(const Features& givenInputs, Features& givenOutputs,
                             int givenOption) const override {
        calls.emplace_back("predict");
        inputs = &givenInputs;
        outputs = &givenOutputs;
        option = givenOption;
        duringPredict();
        return predictAnswer;
    }
    QuavinStatus loadImpl(const std::vector<ModelComponent>& givenComponents) override {
        calls.emplace_back("load");
        components = givenComponents;
        duringLoad();
        return loadAnswer;
    }
    QuavinStatus prepareImpl() override {
        calls.emplace_back("prepare");
        return prepareAnswer;
    }
    QuavinStatus unloadImpl() override {
        calls.emplace_back("unload");
        return unloadAnswer;
    }
};

}  // namespace VelmoraQuavin::testing
