#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "quavin/quavin.h"
#include "support/model_package.h"
#include "support/small_networks.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"
#include "support/tensor_values.h"

namespace VelmoraQuavin::testing {

/// A host with the library switched on, a directory for a package, and a model.
class ModelTest : public ::testing::Test {
protected:
    ModelTest() : ModelTest(QuavinConfig()) {}
    explicit ModelTest(const QuavinConfig& config)
        : switchedOn_(config), client_(QuavinClient::instance()) {}
    /// Leaves no model registered for the next test.
    ~ModelTest() override {
        for (const auto& model : client_.queryRuntimeStatus().getLoadedModels()) {
            client_.getModelManager().unloadModel(model);
        }
    }

    /// Loads the package in a folder of the directory, "" for the directory itself.
    QuavinStatus load(const std::string& folder = "") {
        const std::string path = folder.empty() ? directory_.text() : directory_.entry(folder);
        return client_.getModel(path, model_, 0, QuavinModelType::Openvino);
    }
    /// Writes a plain package of a network and loads it.
    QuavinStatus loadNetwork(const IrNetwork& network) {
        writePackage(directory_, network);
        return load();
    }
    /// Reads the manifest in the directory, as a host does to set keys.
    std::shared_ptr<ModelMetadata> readManifest() const {
        auto metadata = std::make_shared<ModelMetadata>();
        EXPECT_THAT(metadata->load(Filepath(directory_.entry("manifest.json"))), IsOk());
        return metadata;
    }

    /// New inputs for the model.
    QuavinStatus allocateInputs() {
        inputs_.clear();
        return model_->allocateInputs(inputs_);
    }
    /// New outputs from the model.
    QuavinStatus predict() {
        outputs_.clear();
        return model_->predict(inputs_, outputs_);
    }
    /// Sets the first input's floats, predicts, and returns the first output's floats.
    std::vector<float> predictFloats(const std::vector<float>& values) {
        fill(inputs_.at(0), values);
        EXPECT_THAT(predict(), IsOk());
        return valuesOf<float>(outputs_.at(0));
    }

    const QuavinClientInitTerm switchedOn_;
    QuavinClient& client_;
    TempDirectory directory_;
    std::shared_ptr<QuavinModel> model_;
    Features inputs_;
    Features outputs_;
};

}  // namespace VelmoraQuavin::testing
