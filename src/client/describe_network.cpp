#include <memory>
#include <utility>

#include "engine/engine.h"
#include "package/source/memory_source.h"
#include "quavin/network.h"
#include "text/vocabulary.h"

namespace VelmoraQuavin {
namespace {

using Features = std::vector<ModelFeatureDescriptor>;
using internal::Engine;
using internal::NetworkComponentEntry;

void describe(const Engine& engine, const internal::NetworkComponents& network, Features& inputs,
              Features& outputs) {
    internal::NetworkPorts ports = engine.describe(network);
    inputs = std::move(ports.inputs);
    outputs = std::move(ports.outputs);
}

NetworkComponentEntry plainFile(const Filepath& path) {
    return {path.c_str(), ComponentKind::File, path.c_str(), Encryption()};
}

QuavinStatus describePackage(const ModelMetadata& metadata, Features& inputs, Features& outputs) {
    // First, because a manifest counts only once its signature has been verified.
    const auto source = internal::makeComponentSource(metadata);
    const Engine* const engine = internal::chooseEngine(metadata, QuavinModelType::Undefined);
    if (engine == nullptr) {
        const auto needed = internal::builtInEngines().preferred().type();
        return {MODEL_METADATA_ERROR,
                String("The manifest has no target for ") +
                    internal::wordFor(internal::kEngines, needed, "this library")};
    }
    const auto entries = internal::collectNetworkComponents(
        metadata.getTargets().at(engine->type()).components, *source);
    QuavinStatus status = internal::checkNetworkComponents(entries);
    if (status.ok()) {
        describe(*engine, {*source, entries[0], entries[1]}, inputs, outputs);
    }
    return status;
}

// Also makes the source, so that its failures become statuses.
template <typename MakeSource>
QuavinStatus describeMemory(const MakeSource& makeSource, const PackageKeys& keys, Features& inputs,
                            Features& outputs) {
    try {
        const std::shared_ptr<const internal::MemorySource> source = makeSource();
        return describePackage(*internal::readMetadata(source, keys), inputs, outputs);
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

}  // namespace

QuavinStatus describeNetwork(const Filepath& topology, const Filepath& weights,
                             std::vector<ModelFeatureDescriptor>& inputs,
                             std::vector<ModelFeatureDescriptor>& outputs) {
    try {
        const internal::DirectorySource source{Filepath()};  // the paths are complete
        describe(internal::builtInEngines().preferred(),
                 {source, plainFile(topology), plainFile(weights)}, inputs, outputs);
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

QuavinStatus describeNetwork(const ModelMetadata& metadata,
                             std::vector<ModelFeatureDescriptor>& inputs,
                             std::vector<ModelFeatureDescriptor>& outputs) {
    try {
        return describePackage(metadata, inputs, outputs);
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

QuavinStatus describeNetwork(const void* archive, uint64 size, const PackageKeys& keys,
                             std::vector<ModelFeatureDescriptor>& inputs,
                             std::vector<ModelFeatureDescriptor>& outputs) {
    return describeMemory(
        [&] { return std::make_shared<const internal::MemorySource>(archive, size, keys); }, keys,
        inputs, outputs);
}

QuavinStatus describeNetworkFromBuffers(const std::vector<PackageBuffer>& buffers,
                                        const PackageKeys& keys,
                                        std::vector<ModelFeatureDescriptor>& inputs,
                                        std::vector<ModelFeatureDescriptor>& outputs) {
    return describeMemory([&] { return std::make_shared<const internal::MemorySource>(buffers); },
                          keys, inputs, outputs);
}

}  // namespace VelmoraQuavin
