#include "exported_network.hpp"

#include <istream>
#include <ostream>
#include <utility>

#include "failure.hpp"
#include "port_section.hpp"
#include "ports.hpp"
#include "runtime_call.hpp"
#include "scratch_file.hpp"
#include "stream_content.hpp"

namespace InferenceEngine::runtime {
namespace {

/**
 * The runtime checks memory against its own idea of a port, so one that the section describes
 * differently must not get as far as being bound.
 */
void requirePort(const ov_compiled_model_t& model, const LoadedPort& port) {
    ov_output_const_port_t* found = nullptr;
    check([&] {
        return port.direction == Direction::Input
                   ? ov_compiled_model_input_by_index(&model, port.index, &found)
                   : ov_compiled_model_output_by_index(&model, port.index, &found);
    });
    const Handle<ov_output_const_port_t> handle(found);
    ov_element_type_e type = ::DYNAMIC;
    check([&] { return ov_port_get_element_type(handle.get(), &type); });
    const std::string description = describe(port.direction, port.name);
    if (type != elementTypeOf(port.precision) || readDims(*handle, description) != port.dims) {
        throw Failure(NETWORK_NOT_READ, description + " is not described as it was exported");
    }
}

}  // namespace

void exportNetwork(const ov_compiled_model_t& model, const std::vector<LoadedPort>& ports,
                   std::ostream& stream) {
    ScratchFile file;
    check([&] { return ov_compiled_model_export_model(&model, file.path().c_str()); });
    const std::string_view blob = file.content();
    if (blob.empty()) {
        throw Failure(GENERAL_ERROR, "The runtime exported nothing");
    }
    writeNetwork(ports, blob, stream);
}

void writeNetwork(const std::vector<LoadedPort>& ports, std::string_view blob,
                  std::ostream& stream) {
    const std::string section = portSection(ports);
    stream.write(section.data(), static_cast<std::streamsize>(section.size()));
    stream.write(blob.data(), static_cast<std::streamsize>(blob.size()));
    if (!stream) {
        throw Failure(GENERAL_ERROR, "The exported network can't be written");
    }
}

std::shared_ptr<LoadedNetwork> importNetwork(const ov_core_t& core, const std::string& device,
                                             std::istream& stream) {
    StreamContent content = contentOf(stream);
    std::string_view blob = content.bytes;
    std::vector<LoadedPort> ports = takePortSection(blob);
    ov_compiled_model_t* imported = nullptr;
    check([&] {
        return ov_core_import_model(&core, blob.data(), blob.size(), device.c_str(), &imported);
    });
    Handle<ov_compiled_model_t> model(imported);
    for (const LoadedPort& port : ports) {
        requirePort(*model, port);
    }
    // The runtime goes on reading some of the weights where it was given them.
    return details::shared_from_irelease(
        new LoadedNetwork(std::move(model), std::move(ports), std::move(content.owner), blob));
}

}  // namespace InferenceEngine::runtime
