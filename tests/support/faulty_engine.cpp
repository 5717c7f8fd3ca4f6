#include "support/faulty_engine.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

namespace VelmoraQuavin::testing {

FaultyEngine& faultyEngine() {
    static FaultyEngine engine;
    return engine;
}

void FaultyEngine::addInput(const std::string& name,
                            const InferenceEngine::TensorDesc& description) {
    auto info = std::make_shared<InferenceEngine::InputInfo>();
    info->setInputData(std::make_shared<InferenceEngine::Data>(name, description));
    inputs[name] = info;
}

void FaultyEngine::addOutput(const std::string& name,
                             const InferenceEngine::TensorDesc& description) {
    outputs[name] = std::make_shared<InferenceEngine::Data>(name, description);
}

}  // namespace VelmoraQuavin::testing

namespace InferenceEngine {
namespace {

using VelmoraQuavin::testing::FaultyEngine;
using VelmoraQuavin::testing::faultyEngine;

StatusCode give(const FaultyEngine::Answer& answer, ResponseDesc* response) noexcept {
    if (response != nullptr) {
        const std::size_t size = std::min(answer.text.size(), sizeof response->msg - 1);
        std::memcpy(response->msg, answer.text.data(), size);
    }
    return answer.status;
}

class FaultyRequest final : public IInferRequest {
public:
    FaultyRequest() { ++faultyEngine().requestsAlive; }
    ~FaultyRequest() override { --faultyEngine().requestsAlive; }
    void Release() noexcept override { delete this; }

    StatusCode SetBlob(const char* name, const Blob::Ptr& blob,
                       ResponseDesc* response) noexcept override {
        FaultyEngine& engine = faultyEngine();
        engine.boundNames.emplace_back(name);
        engine.bound[name] = blob;
        const auto fault = engine.binding.find(name);
        return fault == engine.binding.end() ? OK : give(fault->second, response);
    }

    StatusCode Infer(ResponseDesc* response) noexcept override {
        FaultyEngine& engine = faultyEngine();
        ++engine.inferences;
        if (engine.onInfer) {
            engine.onInfer(engine.bound);
        }
        return give(engine.inferring, response);
    }
};

class FaultyExecutable final : public IExecutableNetwork {
public:
    void Release() noexcept override { delete this; }

    StatusCode GetOutputsInfo(ConstOutputsDataMap& outputs,
                              ResponseDesc* /*response*/) const noexcept override {
        const OutputsDataMap& all = faultyEngine().outputs;
        outputs.insert(all.begin(), all.end());
        return OK;
    }

    StatusCode GetInputsInfo(ConstInputsDataMap& inputs,
                             ResponseDesc* /*response*/) const noexcept override {
        const InputsDataMap& all = faultyEngine().inputs;
        inputs.insert(all.begin(), all.end());
        return OK;
    }

    StatusCode CreateInferRequest(IInferRequest::Ptr& request,
                                  ResponseDesc* response) noexcept override {
        const FaultyEngine& engine = faultyEngine();
        if (engine.hasRequest && engine.makingRequest.status == OK) {
            request = details::shared_from_irelease(new (std::nothrow) FaultyRequest);
        }
        return give(engine.makingRequest, response);
    }

    StatusCode Export(std::ostream& /*networkModel*/, ResponseDesc* response) noexcept override {
        return give({NOT_IMPLEMENTED, "nothing can be exported"}, response);
    }

    StatusCode GetConfig(const std::string& name, Parameter& result,
                         ResponseDesc* response) const noexcept override {
        const auto& settings = faultyEngine().settings;
        const auto found = settings.find(name);
        if (found == settings.end()) {
            return give({NOT_FOUND, "no setting " + name}, response);
        }
        result = found->second;
        return OK;
    }
};

class FaultyNetwork final : public ICNNNetwork {
public:
    void Release() noexcept override { delete this; }
    const InputsDataMap& getInputsInfo() const noexcept override { return faultyEngine().inputs; }
    const OutputsDataMap& getOutputsInfo() const noexcept override {
        return faultyEngine().outputs;
    }
};

class FaultyReader final : public ICNNNetReader {
public:
    FaultyReader() { ++faultyEngine().readersAlive; }
    ~FaultyReader() override { --faultyEngine().readersAlive; }
    void Release() noexcept override { delete this; }

    StatusCode ReadNetwork(const void* model, std::size_t size,
                           ResponseDesc* response) noexcept override {
        FaultyEngine& engine = faultyEngine();
        engine.readTexts.emplace_back(static_cast<const char*>(model), size);
        if (engine.onRead) {
            engine.onRead(model, size);
        }
        return give(engine.reading, response);
    }
    StatusCode SetWeights(const TBlob<std::uint8_t>::Ptr& weights,
                          ResponseDesc* response) noexcept override {
        faultyEngine().weights = weights;
        weights_ = faultyEngine().readersKeepWeights ? weights : nullptr;
        return give(faultyEngine().settingWeights, response);
    }
    ICNNNetwork* getNetwork(ResponseDesc* /*response*/) noexcept override {
        return faultyEngine().hasNetwork ? &network_ : nullptr;
    }

private:
    FaultyNetwork network_;
    TBlob<std::uint8_t>::Ptr weights_;
};

}  // namespace

// The interface's own version throws a class for each status, which nothing here may depend on.
void details::extract_exception(StatusCode /*status*/, char* message) {
    if (faultyEngine().throwsNumbers) {
        throw 42;
    }
    throw InferenceEngineException(message);
}

ICNNNetReader* CreateCNNNetReader() noexcept {
    if (!faultyEngine().hasReader) {
        return nullptr;
    }
    ++faultyEngine().readersMade;
    return new (std::nothrow) FaultyReader;
}

class Core::Impl {
public:
    Impl() { ++faultyEngine().coresAlive; }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl() { --faultyEngine().coresAlive; }
};

Core::Core(const std::string& configFile) : impl_(std::make_shared<Impl>()) {
    faultyEngine().configFiles.push_back(configFile);
}

ExecutableNetwork Core::LoadNetwork(CNNNetwork /*network*/, const std::string& device,
                                    const std::map<std::string, std::string>& config) {
    FaultyEngine& engine = faultyEngine();
    engine.loadings.push_back({device, config});
    if (engine.loading.status == PARAMETER_MISMATCH) {
        throw ParameterMismatch(engine.loading.text);  // how an engine refuses a setting
    }
    if (engine.loading.status != OK) {
        details::extract_exception(engine.loading.status, engine.loading.text.data());
    }
    return ExecutableNetwork(details::shared_from_irelease(new FaultyExecutable));
}

ExecutableNetwork Core::ImportNetwork(std::istream& /*networkModel*/,
                                      const std::string& /*deviceName*/,
                                      const std::map<std::string, std::string>& /*config*/) {
    throw NotImplemented("nothing can be imported");
}

Parameter Core::GetMetric(const std::string& device, const std::string& name) const {
    const auto& metrics = faultyEngine().metrics;
    const auto found = metrics.find({device, name});
    if (found == metrics.end()) {
        throw 42;
    }
    return found->second;
}

const Version* GetInferenceEngineVersion() noexcept {
    return faultyEngine().version;
}

}  // namespace InferenceEngine
