#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "quavin/metadata.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::testing {

/// Loads manifest texts into one metadata object.
class ManifestFixture : public ::testing::Test {
protected:
    Filepath path() const { return Filepath(directory_.entry("manifest.json")); }
    QuavinStatus load(std::string_view manifest) {
        directory_.write("manifest.json", manifest);
        return metadata_.load(path());
    }
    std::string failedToOpen() const {
        return "Failed to open metadata file at " + directory_.entry("manifest.json");
    }

    /// Loads a manifest with this value as its OpenVINO target and returns the target.
    ModelTarget loadTarget(const std::string& value) {
        EXPECT_THAT(load(R"({"targets": {"Openvino": )" + value + "}}"), IsOk());
        return metadata_.getTargets().at(QuavinModelType::Openvino);
    }
    /// Loads a manifest with this value as its only input and returns the input.
    ModelFeatureDescriptor loadInput(const std::string& value) {
        return loadTarget(R"({"inputs": [)" + value + "]}").inputs.at(0);
    }

    TempDirectory directory_;
    ModelMetadata metadata_;
};

}  // namespace VelmoraQuavin::testing
