// Runs targets over files, in every build and without libFuzzer:
//
//     quavin_fuzz_replay TARGET=PATH...
//
// A path is a file, or a folder with any number of them. Each file's name is printed before it is
// run: after a crash, the last one is the culprit.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

// One line QUAVIN_FUZZ_TARGET(name) for each target.
#define QUAVIN_FUZZ_TARGET(name) \
    extern "C" int quavin_fuzz_##name(const std::uint8_t*, std::size_t);
#include "fuzz_targets.inc"
#undef QUAVIN_FUZZ_TARGET

namespace {

namespace fs = std::filesystem;

struct Target {
    const char* name;
    int (*run)(const std::uint8_t*, std::size_t);
};
constexpr Target kTargets[] = {
#define QUAVIN_FUZZ_TARGET(name) {#name, quavin_fuzz_##name},
#include "fuzz_targets.inc"
#undef QUAVIN_FUZZ_TARGET
};

const Target& targetNamed(const std::string& name) {
    const auto* const target =
        std::find_if(std::begin(kTargets), std::end(kTargets),
                     [&name](const Target& candidate) { return candidate.name == name; });
    if (target == std::end(kTargets)) {
        throw std::runtime_error("there is no target " + name);
    }
    return *target;
}

// In an order that is the same everywhere.
std::vector<fs::path> filesAt(const fs::path& path) {
    std::vector<fs::path> files;
    if (fs::is_regular_file(path)) {
        files.push_back(path);
    } else {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path)) {
            if (entry.is_regular_file()) {
                files.push_back(entry.path());
            }
        }
    }
    if (files.empty()) {
        throw std::runtime_error("there are no files in " + path.u8string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const Target& target, const fs::path& file) {
    std::cout << target.name << ' ' << file.u8string() << std::endl;
    std::ifstream stream(file, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(stream),
                              std::istreambuf_iterator<char>()};
    if (!stream.is_open()) {
        throw std::runtime_error("cannot read it");
    }
    // Exactly as long as the input, so that the sanitizers see what is read beyond it.
    const std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[content.size()]);
    std::copy(content.begin(), content.end(), bytes.get());
    static_cast<void>(target.run(bytes.get(), content.size()));
}

std::size_t replayAll(const std::string& argument) {
    const std::size_t equals = argument.find('=');
    if (equals == std::string::npos) {
        throw std::runtime_error("expected TARGET=PATH instead of " + argument);
    }
    const Target& target = targetNamed(argument.substr(0, equals));
    const std::vector<fs::path> files = filesAt(fs::u8path(argument.substr(equals + 1)));
    for (const fs::path& file : files) {
        replay(target, file);
    }
    return files.size();
}

}  // namespace

int main(int argc, char** argv) {
    try {
        std::size_t count = 0;
        for (int i = 1; i < argc; ++i) {
            count += replayAll(argv[i]);
        }
        std::cout << count << " inputs replayed" << std::endl;
        return count == 0 ? 1 : 0;
    } catch (const std::exception& exception) {
        std::cerr << "quavin_fuzz_replay: " << exception.what() << std::endl;
        return 1;
    }
}
