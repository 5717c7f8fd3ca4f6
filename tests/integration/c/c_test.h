#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "quavin/c.h"
#include "support/model_package.h"
#include "support/secured_file.h"
#include "support/small_networks.h"
#include "support/tar_archive.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::testing {

/// Matches a failure with exactly this code, and a text of the thread's last error that matches.
MATCHER_P2(FailsWith, code, textMatcher, "") {
    return arg == code && ::testing::ExplainMatchResult(
                              textMatcher, std::string(quavin_last_error()), result_listener);
}

/// Matches success.
MATCHER(Succeeds, "") {
    *result_listener << "whose thread's last error is " << quavin_last_error();
    return arg == QUAVIN_SUCCESS;
}

/// A C host with the library switched on, a directory for a package, and a model.
class CInterface : public ::testing::Test {
protected:
    CInterface() { EXPECT_THAT(quavin_init(nullptr), Succeeds()); }
    ~CInterface() override {
        release(model_);
        quavin_terminate();
    }

    /// Loads the package in the directory.
    quavin_status load(const quavin_load_options* options = nullptr) {
        release(model_);
        return quavin_load_directory(directory_.text().c_str(), options, &model_);
    }
    /// Writes a plain package of a network and loads it.
    quavin_status loadNetwork(const IrNetwork& network) {
        writePackage(directory_, network);
        return load();
    }
    /// Predicts with one input of floats and returns the floats of the first output.
    static std::vector<float> predictFloats(quavin_model* model, const std::vector<float>& x) {
        const void* const inputs[] = {x.data()};
        const std::size_t sizes[] = {x.size() * sizeof(float)};
        quavin_outputs* outputs = nullptr;
        EXPECT_THAT(quavin_predict(model, inputs, sizes, 1, &outputs), Succeeds());
        std::vector<float> values = floatsOf(outputs, 0);
        quavin_outputs_release(outputs);
        return values;
    }
    static std::vector<float> floatsOf(quavin_outputs* outputs, std::size_t index) {
        quavin_output output = QUAVIN_OUTPUT_INIT;
        if (quavin_outputs_get(outputs, index, &output) != QUAVIN_SUCCESS) {
            return {};
        }
        const auto* const values = static_cast<const float*>(output.data);
        const std::size_t count = output.bytes / sizeof(float);
        return {values, values + count};
    }
    static quavin_port inputOf(quavin_model* model, std::size_t index) {
        quavin_port port = QUAVIN_PORT_INIT;
        EXPECT_THAT(quavin_model_get_input(model, index, &port), Succeeds());
        return port;
    }
    static quavin_port outputOf(quavin_model* model, std::size_t index) {
        quavin_port port = QUAVIN_PORT_INIT;
        EXPECT_THAT(quavin_model_get_output(model, index, &port), Succeeds());
        return port;
    }
    static std::vector<std::int64_t> dimsOf(const quavin_port& port) {
        return {port.dims, port.dims + port.rank};
    }

    /// Releases a handle and forgets it.
    static void release(quavin_model*& model) {
        EXPECT_THAT(quavin_model_release(model), Succeeds());
        model = nullptr;
    }

    TempDirectory directory_;
    quavin_model* model_ = nullptr;
};

/// A package's files, as buffers and as an archive.
struct PackageInMemory {
    explicit PackageInMemory(const IrNetwork& network)
        : manifest(describe(network).manifest()),
          topology(network.topology()),
          weights(network.weights()) {}

    std::vector<quavin_buffer> buffers() const {
        return {{"manifest.json", manifest.data(), manifest.size(), nullptr, nullptr},
                {"net.xml", topology.data(), topology.size(), nullptr, nullptr},
                {"net.bin", weights.data(), weights.size(), nullptr, nullptr}};
    }
    std::string archive() const {
        return tarDirectory("model/") + tarFile("model/manifest.json", manifest) +
               tarFile("model/net.xml", topology) + tarFile("model/net.bin", weights) + tarEnd();
    }

    std::string manifest;
    std::string topology;
    std::string weights;
};

}  // namespace VelmoraQuavin::testing
