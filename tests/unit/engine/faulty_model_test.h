#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "open_model.h"
#include "support/faulty_engine.h"
#include "support/model_package.h"
#include "support/secured_file.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"
#include "support/tensor_values.h"

namespace VelmoraQuavin::testing {

/// A model of the faulty engine and a plain package for it. The network maps "x" to "y", four
/// floats each.
class FaultyModelTest : public ::testing::Test {
protected:
    FaultyModelTest() {
        engine_ = FaultyEngine();
        const InferenceEngine::TensorDesc fourFloats(InferenceEngine::Precision::FP32, {1, 4},
                                                     InferenceEngine::NC);
        engine_.addInput("x", fourFloats);
        engine_.addOutput("y", fourFloats);
        text_.inputs = {tensorFeature("x", {1, 4}, "float")};
        text_.outputs = {tensorFeature("y", {1, 4}, "float")};
        directory_.write("net.xml", "topology");
        directory_.write("net.bin", "weights");
        model_ = std::make_shared<OpenModel>("m", Device());
    }

    /// Writes the manifest and reads it.
    std::shared_ptr<ModelMetadata> metadata() {
        writeManifest(directory_, text_);
        auto metadata = std::make_shared<ModelMetadata>();
        EXPECT_THAT(metadata->load(Filepath(directory_.entry("manifest.json"))), IsOk());
        return metadata;
    }
    QuavinStatus load() { return model_->load(metadata()); }
    /// Loads the model and sets its input.
    void loadWithInput() {
        ASSERT_THAT(load(), IsOk());
        inputs_ = {featureOf<float>("x", {1, 4}, DataType::FLOAT, {1, 2, 3, 4})};
    }
    QuavinStatus predict() { return model_->predict(inputs_, outputs_); }

    FaultyEngine& engine_ = faultyEngine();
    TempDirectory directory_;
    PackageText text_;
    std::shared_ptr<OpenModel> model_;
    Features inputs_;
    Features outputs_;
};

}  // namespace VelmoraQuavin::testing
