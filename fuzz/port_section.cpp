// The ports of a compiled network, in front of what the runtime exported.
#include "port_section.hpp"

#include "failure.hpp"
#include "fuzz/promise.h"

namespace runtime = InferenceEngine::runtime;
using quavin_fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = quavin_fuzz::textOf(data, size);
    std::string_view rest = input;
    try {
        const std::vector<runtime::LoadedPort> ports = runtime::takePortSection(rest);
        require(runtime::portSection(ports) == input.substr(0, input.size() - rest.size()),
                "ports that are accepted are written the same");
    } catch (const runtime::Failure& failure) {
        require(failure.status() == InferenceEngine::NETWORK_NOT_READ, "a refusal is not an error");
        require(rest == input, "a refused section stays");
    }
    return 0;
}
