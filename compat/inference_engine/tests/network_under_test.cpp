#include "network_under_test.hpp"

#include <sstream>
#include <stdexcept>

namespace InferenceEngine {

std::shared_ptr<ICNNNetReader> makeReader() {
    return details::shared_from_irelease(CreateCNNNetReader());
}

ReadingResult tryReading(ICNNNetReader& reader, const std::string& network,
                         const TBlob<std::uint8_t>::Ptr& weights) {
    ResponseDesc response;
    StatusCode status = reader.ReadNetwork(network.data(), network.size(), &response);
    if (status == OK) {
        status = reader.SetWeights(weights, &response);
    }
    return {status, response.msg};
}

std::shared_ptr<ICNNNetReader> readNetwork(const std::string& network,
                                           const TBlob<std::uint8_t>::Ptr& weights) {
    auto reader = makeReader();
    const ReadingResult result = tryReading(*reader, network, weights);
    if (result.status != OK) {
        throw std::runtime_error(result.text);
    }
    return reader;
}

InferRequest::Ptr load(CNNNetwork network) {
    return Core().LoadNetwork(network, "CPU").CreateInferRequestPtr();
}

std::string exported(ExecutableNetwork network) {
    std::ostringstream stream;
    network.Export(stream);
    return stream.str();
}

ExecutableNetwork imported(const std::string& bytes,
                           const std::map<std::string, std::string>& config) {
    std::istringstream stream(bytes);
    return Core().ImportNetwork(stream, "CPU", config);
}

std::string configOf(const ExecutableNetwork& network, const char* name) {
    return network.GetConfig(name).as<std::string>();
}

std::vector<std::string> inputNames(const CNNNetwork& network) {
    std::vector<std::string> names;
    for (const auto& [name, input] : network.getInputsInfo()) {
        names.push_back(name);
    }
    return names;
}

std::vector<std::string> outputNames(const CNNNetwork& network) {
    std::vector<std::string> names;
    for (const auto& [name, output] : network.getOutputsInfo()) {
        names.push_back(name);
    }
    return names;
}

}  // namespace InferenceEngine
