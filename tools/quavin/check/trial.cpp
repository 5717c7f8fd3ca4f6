#include "tools/quavin/check/trial.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/secure_wipe.h"
#include "platform/child_process.h"
#include "quavin/network.h"
#include "tools/quavin/check/message.h"
#include "tools/quavin/cli/library.h"
#include "tools/quavin/cli/notes.h"
#include "tools/quavin/package/opened_package.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::DataType;
using VelmoraQuavin::EngineOptions;
using VelmoraQuavin::Filepath;
using VelmoraQuavin::ModelFeatureDescriptor;
using VelmoraQuavin::QuavinStatus;
using VelmoraQuavin::TensorDescriptor;
namespace platform = VelmoraQuavin::internal::platform;

enum class Task : std::uint64_t { kDescribeFiles, kDescribePackage, kPredict };

struct Request {
    Task task;
    std::string_view first;   // the network or the package
    std::string_view second;  // the weights
    const unsigned char* key;
    EngineOptions options;
};

void write(MessageWriter& message, const Descriptors& ports) {
    message.number(ports.size());
    for (const ModelFeatureDescriptor& port : ports) {
        const TensorDescriptor& tensor = port.tensorDescriptor();
        const std::vector<VelmoraQuavin::int64> shape = tensor.shape().shapeVector();
        message.text(port.name().view());
        message.number(static_cast<std::uint64_t>(tensor.tensorType()));
        message.number(shape.size());
        for (const VelmoraQuavin::int64 extent : shape) {
            message.number(static_cast<std::uint64_t>(extent));
        }
    }
}

Descriptors readPorts(MessageReader& message) {
    Descriptors ports;
    for (std::uint64_t left = message.number(); left > 0; --left) {
        const std::string name(message.text());
        const auto type = static_cast<DataType>(message.number());
        std::vector<VelmoraQuavin::int64> shape;
        for (std::uint64_t extents = message.number(); extents > 0; --extents) {
            shape.push_back(static_cast<VelmoraQuavin::int64>(message.number()));
        }
        ports.emplace_back(VelmoraQuavin::QuavinFeatureType::TENSOR, true, name, "",
                           TensorDescriptor(name, VelmoraQuavin::TensorShape(shape), false, type),
                           VelmoraQuavin::ImageDescriptor());
    }
    return ports;
}

Trial readTrial(std::string_view answer) {
    MessageReader message(answer);
    Trial trial;
    const auto code = static_cast<VelmoraQuavin::STATUS_CODE>(message.number());
    trial.status = QuavinStatus(code, std::string(message.text()));
    trial.inputs = readPorts(message);
    trial.outputs = readPorts(message);
    return trial;
}

std::string textOf(const Trial& trial) {
    MessageWriter message;
    message.number(static_cast<std::uint64_t>(trial.status.getCode()));
    message.text(trial.status.getDescription().view());
    write(message, trial.inputs);
    write(message, trial.outputs);
    return std::move(message.bytes());
}

OpenedPackage openPackage(const Request& request) {
    return {std::string(request.first), request.key};
}

void predictOnce(const Request& request) {
    const std::shared_ptr<VelmoraQuavin::QuavinModel> model =
        openPackage(request).load(request.options);
    const Features inputs = zeroInputs(*model);
    const bool complete = std::none_of(inputs.begin(), inputs.end(), [](const auto& input) {
        return input->featureDescriptor().tensorDescriptor().variableShape();
    });
    if (complete) {
        predict(*model, inputs);
    }
}

Trial perform(const Request& request) {
    Trial trial;
    trial.status = QuavinStatus(VelmoraQuavin::SUCCESS, "");
    try {
        switch (request.task) {
            case Task::kDescribeFiles:
                trial.status = VelmoraQuavin::describeNetwork(Filepath(std::string(request.first)),
                                                              Filepath(std::string(request.second)),
                                                              trial.inputs, trial.outputs);
                break;
            case Task::kDescribePackage:
                trial.status = openPackage(request).describe(trial.inputs, trial.outputs);
                break;
            default:
                predictOnce(request);
        }
    } catch (...) {
        trial.status = VelmoraQuavin::getStatusFromCurrentException();
    }
    if (!trial.status.ok()) {
        printNotes();  // otherwise they would be lost with this process
    }
    return trial;
}

// What trustKeys() was called with there counts here as well.
void readTrustedKeys(MessageReader& message) {
    std::vector<VelmoraQuavin::String> pems;
    for (std::uint64_t left = message.number(); left > 0; --left) {
        pems.emplace_back(message.text());
    }
    if (!pems.empty()) {
        trustKeys(pems);
    }
}

Trial runApart(const Request& request) {
    const std::string_view key(reinterpret_cast<const char*>(request.key),
                               request.key == nullptr ? 0 : kKeySize);
    MessageWriter message;
    std::size_t size = request.first.size() + request.second.size() + key.size() +
                       request.options.cacheDirectory.size() + 11 * sizeof(std::uint64_t);
    for (const VelmoraQuavin::String& pem : trustedKeys()) {
        size += sizeof(std::uint64_t) + pem.size();
    }
    message.reserve(size);
    message.number(static_cast<std::uint64_t>(request.task));
    message.text(request.first);
    message.text(request.second);
    message.text(key);
    message.number(static_cast<std::uint64_t>(request.options.precision));
    message.number(static_cast<std::uint64_t>(request.options.threads));
    message.number(static_cast<std::uint64_t>(request.options.hint));
    message.number(request.options.mapWeights ? 1 : 0);
    message.text(request.options.cacheDirectory.view());
    message.number(request.options.cacheSizeLimit);
    message.number(trustedKeys().size());
    for (const VelmoraQuavin::String& pem : trustedKeys()) {
        message.text(pem.view());
    }
    std::string& bytes = message.bytes();
    const VelmoraQuavin::internal::WipeOnExit wipe(bytes.data(), bytes.size());

    const platform::ChildResult result = platform::runInChild(answerTrial, bytes);
    if (result.problem.empty()) {
        return readTrial(result.answer);
    }
    Trial trial;
    trial.crash = "the engine crashed: the process that tried it " + result.problem;
    return trial;
}

}  // namespace

Trial tryToDescribe(const std::string& network, const std::string& weights) {
    return runApart({Task::kDescribeFiles, network, weights, nullptr, {}});
}

Trial tryToDescribe(const std::string& package, const Key* key) {
    return runApart({Task::kDescribePackage, package, {}, bytesOf(key), {}});
}

Trial tryToPredict(const std::string& package, const Key* key, const EngineOptions& options) {
    return runApart({Task::kPredict, package, {}, bytesOf(key), options});
}

std::string answerTrial(std::string_view request) {
    forgetNotes();  // inherited if this process is a copy of its parent
    MessageReader message(request);
    Request parts{};
    parts.task = static_cast<Task>(message.number());
    parts.first = message.text();
    parts.second = message.text();
    const std::string_view key = message.text();
    parts.key =
        key.size() == kKeySize ? reinterpret_cast<const unsigned char*>(key.data()) : nullptr;
    parts.options.precision = static_cast<EngineOptions::Precision>(message.number());
    parts.options.threads = static_cast<int>(message.number());
    parts.options.hint = static_cast<EngineOptions::Hint>(message.number());
    parts.options.mapWeights = message.number() != 0;
    parts.options.cacheDirectory = message.text();
    parts.options.cacheSizeLimit = message.number();
    readTrustedKeys(message);
    return textOf(perform(parts));
}

}  // namespace quavin_tool
