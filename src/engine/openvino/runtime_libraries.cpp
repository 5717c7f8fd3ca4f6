#include "engine/openvino/runtime_libraries.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/diagnostics.h"
#include "platform/loaded_libraries.h"

namespace VelmoraQuavin::internal {
namespace {

namespace fs = std::filesystem;

#if defined(__aarch64__) || defined(_M_ARM64)
constexpr const char* kCpuPlugin = "openvino_arm_cpu_plugin";
#else
constexpr const char* kCpuPlugin = "openvino_intel_cpu_plugin";
#endif

// A runtime, and the libraries that it loads from its own folder to read and run networks.
struct Runtime {
    const char* library;
    std::vector<const char*> needed;
};
const std::array<Runtime, 2>& knownRuntimes() {
    static const std::array<Runtime, 2> runtimes = {
        {{"openvino", {"openvino_ir_frontend", kCpuPlugin}},
         {"inference_engine", {"MKLDNNPlugin"}}}};
    return runtimes;
}

// Ignores the prefix, suffix and version that the system adds to a name.
bool hasLibrary(const fs::path& folder, const std::string& name) {
    return std::any_of(fs::directory_iterator(folder), fs::directory_iterator(),
                       [&name](const fs::directory_entry& file) {
                           return file.path().filename().u8string().find(name) != std::string::npos;
                       });
}

// Empty if nothing is missing, or if no known runtime is loaded.
std::string missingLibraries() {
    for (const Runtime& runtime : knownRuntimes()) {
        const std::optional<fs::path> folder = platform::directoryOfLibrary(runtime.library);
        if (!folder.has_value()) {
            continue;
        }
        NameList missing;
        for (const char* const name : runtime.needed) {
            if (!hasLibrary(*folder, name)) {
                missing.add(name);
            }
        }
        if (!missing.empty()) {
            return "the runtime in " + inQuotes(folder->u8string()) + " lacks " + missing.text();
        }
    }
    return "";
}

}  // namespace

void diagnoseMissingLibraries(const char* doing, const String& path) noexcept {
    diagnose([&] {
        const std::string missing = missingLibraries();
        return missing.empty() ? missing : doing + (" " + inQuotes(path)) + ": " + missing;
    });
}

}  // namespace VelmoraQuavin::internal
