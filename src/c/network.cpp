#include "quavin/network.h"

#include "c/options.h"
#include "c/package_directory.h"
#include "c/port.h"
#include "c/results.h"
#include "c/sized_struct.h"
#include "quavin/c.h"

namespace VelmoraQuavin::internal {
namespace {

/// What a quavin_network stands for.
struct Network {
    Ports inputs;
    Ports outputs;
};

/// @param describe fills the inputs and the outputs.
template <typename Describe>
std::shared_ptr<Network> networkOf(const Describe& describe) {
    std::vector<ModelFeatureDescriptor> inputs;
    std::vector<ModelFeatureDescriptor> outputs;
    require(describe(inputs, outputs));
    return std::make_shared<Network>(Network{portsOf(inputs), portsOf(outputs)});
}

}  // namespace

template <>
struct HandleKind<quavin_network> {
    using Object = Network;
    static constexpr const char* kName = "a network";
    static constexpr const char* kArgument = "network";
};

}  // namespace VelmoraQuavin::internal

using namespace VelmoraQuavin;
using namespace VelmoraQuavin::internal;

quavin_status quavin_describe_directory(const char* path, const quavin_keys* keys,
                                        quavin_network** network) {
    return guardedHandle(network, [&] {
        requireGiven(path, "path");
        const ModelMetadata metadata = readManifest(path, packageKeysOf(keys, PackageForm::kFiles));
        return networkOf([&](auto& inputs, auto& outputs) {
            return describeNetwork(metadata, inputs, outputs);
        });
    });
}

quavin_status quavin_describe_archive(const void* data, size_t size, const quavin_keys* keys,
                                      quavin_network** network) {
    return guardedHandle(network, [&] {
        requireGiven(data, "data");
        const PackageKeys given = packageKeysOf(keys, PackageForm::kArchive);
        return networkOf([&](auto& inputs, auto& outputs) {
            return describeNetwork(data, size, given, inputs, outputs);
        });
    });
}

quavin_status quavin_describe_buffers(const quavin_buffer* buffers, size_t count,
                                      const quavin_keys* keys, quavin_network** network) {
    return guardedHandle(buffers, count, network, [&](const std::vector<PackageBuffer>& files) {
        const PackageKeys given = packageKeysOf(keys, PackageForm::kFiles);
        return networkOf([&](auto& inputs, auto& outputs) {
            return describeNetworkFromBuffers(files, given, inputs, outputs);
        });
    });
}

quavin_status quavin_describe_files(const char* topology, const char* weights,
                                    quavin_network** network) {
    return guardedHandle(network, [&] {
        requireGiven(topology, "topology");
        return networkOf([&](auto& inputs, auto& outputs) {
            return describeNetwork(Filepath(String(topology)), Filepath(String(weights)), inputs,
                                   outputs);
        });
    });
}

quavin_status quavin_network_get_input_count(quavin_network* network, size_t* count) {
    return guardedCount(count, [&] { return objectOf(network)->inputs.size(); });
}

quavin_status quavin_network_get_output_count(quavin_network* network, size_t* count) {
    return guardedCount(count, [&] { return objectOf(network)->outputs.size(); });
}

quavin_status quavin_network_get_input(quavin_network* network, size_t index, quavin_port* port) {
    return guarded([&] {
        fillStruct(port, elementAt(objectOf(network)->inputs, index).plain(), "quavin_port");
    });
}

quavin_status quavin_network_get_output(quavin_network* network, size_t index, quavin_port* port) {
    return guarded([&] {
        fillStruct(port, elementAt(objectOf(network)->outputs, index).plain(), "quavin_port");
    });
}

quavin_status quavin_network_release(quavin_network* network) {
    return guardedRelease(network);
}
