#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <inference_engine.hpp>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace VelmoraQuavin::testing {

/// An engine that fails on demand and records what it was asked for. It implements the engine
/// interface in programs that do not link the real engine.
///
/// It has one network, with the inputs and outputs that a test sets, whatever text is read.
struct FaultyEngine {
    /// What an operation returns; if it fails, with this text.
    struct Answer {
        InferenceEngine::StatusCode status = InferenceEngine::OK;
        std::string text;
    };
    struct Loading {
        std::string device;
        std::map<std::string, std::string> config;
    };

    /// What fails.
    bool hasReader = true;
    bool hasNetwork = true;
    bool hasRequest = true;
    bool throwsNumbers = false;  ///< Failures are thrown as 42 instead of a standard exception.
    Answer reading;
    Answer settingWeights;
    bool readersKeepWeights = false;
    Answer loading;
    Answer makingRequest;
    Answer inferring;
    std::map<std::string, Answer> binding;  ///< By the name of the blob.

    /// The network.
    InferenceEngine::InputsDataMap inputs;
    InferenceEngine::OutputsDataMap outputs;
    std::function<void(const InferenceEngine::BlobMap&)> onInfer;
    std::map<std::string, InferenceEngine::Parameter> settings;  ///< For any loaded network.

    /// The engine itself; it refuses to report anything not listed here.
    const InferenceEngine::Version* version = nullptr;
    std::map<std::pair<std::string, std::string>, InferenceEngine::Parameter> metrics;
    std::function<void(const void*, std::size_t)> onRead;

    /// What was asked for.
    std::vector<std::string> configFiles;
    std::vector<std::string> readTexts;
    InferenceEngine::TBlob<std::uint8_t>::Ptr weights;
    std::vector<Loading> loadings;
    std::vector<std::string> boundNames;
    /// Held until the next blob of the same name is bound, as in the 2020 releases.
    InferenceEngine::BlobMap bound;
    int inferences = 0;
    int readersMade = 0;
    int readersAlive = 0;
    int coresAlive = 0;
    int requestsAlive = 0;

    void addInput(const std::string& name, const InferenceEngine::TensorDesc& description);
    void addOutput(const std::string& name, const InferenceEngine::TensorDesc& description);
};

/// The engine of this program.
FaultyEngine& faultyEngine();

}  // namespace VelmoraQuavin::testing
