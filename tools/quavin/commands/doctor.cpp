#include <algorithm>
#include <array>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/openvino/trial_network.h"
#include "platform/loaded_libraries.h"
#include "quavin/engine_info.h"
#include "quavin/version.h"
#include "tools/quavin/check/trial.h"
#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/notes.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/path_text.h"
#include "tools/quavin/io/require.h"
#include "tools/quavin/io/temporary_directory.h"
#include "tools/quavin/package/manifest_text.h"
#include "tools/quavin/package/opened_package.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::EngineInfo;
using VelmoraQuavin::ModelFeatureDescriptor;
using VelmoraQuavin::QuavinStatus;
using VelmoraQuavin::internal::kTrialNetwork;

struct DoctorOptions {
    OutputOptions output;
};

struct Library {
    std::string name;
    std::string file;
};

struct Diagnosis {
    QuavinStatus status;   // of loading and predicting
    bool crashed = false;  // the trial process; this one has loaded little then
    EngineInfo engine;
    std::vector<Library> libraries;
    std::vector<std::string> missing;
};

using Four = std::array<float, 4>;

// Parts of the runtime that it loads itself when needed, with parts of their file names in today's
// releases and in those of 2019 and 2020.
struct Part {
    const char* name;
    std::array<std::string_view, 2> files;
};
constexpr std::array<Part, 2> kLoadedLate{{{"CPU plugin", {"cpu_plugin", "mkldnnplugin"}},
                                           {"IR frontend", {"ir_frontend", "ir_reader"}}}};

// Libraries that predictions depend on, except the system's own.
constexpr std::array<std::string_view, 7> kOfInterest{
    "quavin", "openvino", "inference_engine", "mkldnnplugin", "tbb", "libcrypto", "bcrypt."};

template <typename Parts>
bool isAnyIn(const Parts& parts, const std::string& name) {
    const std::string small = toAsciiLower(name);
    return std::any_of(parts.begin(), parts.end(), [&small](std::string_view part) {
        return small.find(part) != std::string::npos;
    });
}

ModelFeatureDescriptor port(const char* name) {
    const VelmoraQuavin::TensorShape shape(std::vector<VelmoraQuavin::int64>{1, 4});
    return {VelmoraQuavin::QuavinFeatureType::TENSOR,
            true,
            name,
            "",
            VelmoraQuavin::TensorDescriptor(name, shape, false, VelmoraQuavin::DataType::FLOAT),
            VelmoraQuavin::ImageDescriptor()};
}

void writePackage(const std::string& directory) {
    Identity identity;
    identity.id = identity.name = "trial";
    writeNewFile(join(directory, kManifestName),
                 manifestText(identity, {"net.xml", "net.bin"}, false, {port("x")}, {port("y")}));
    writeNewFile(join(directory, "net.xml"), kTrialNetwork);
    writeNewFile(join(directory, "net.bin"), "");
}

void predictAndCompare(VelmoraQuavin::QuavinModel& model) {
    constexpr Four kInput{1.5F, -2, 0, 1e6F};
    constexpr Four kExpected{3, -4, 0, 2e6F};
    const Features inputs = zeroInputs(model);
    std::memcpy(inputs.at(0)->asTensor()->buffer(), kInput.data(), sizeof kInput);
    const Features outputs = predict(model, inputs);
    Four output{};
    std::memcpy(output.data(), outputs.at(0)->asTensor()->buffer(), sizeof output);
    if (output != kExpected) {
        throw VelmoraQuavin::MLFrameworkException("The prediction returned wrong numbers");
    }
}

void listLibraries(Diagnosis& diagnosis) {
    for (const std::string& file : VelmoraQuavin::internal::platform::loadedLibraries()) {
        const std::string name = fileName(file);
        if (isAnyIn(kOfInterest, name)) {
            diagnosis.libraries.push_back({name, file});
        }
    }
    for (const Part& part : kLoadedLate) {
        const bool found = std::any_of(
            diagnosis.libraries.begin(), diagnosis.libraries.end(),
            [&part](const Library& library) { return isAnyIn(part.files, library.name); });
        if (!found && !diagnosis.crashed) {
            diagnosis.missing.emplace_back(part.name);
        }
    }
}

// Goes from a package on disk to numbers, as hosts do.
void tryEngine(Diagnosis& diagnosis) {
    const TemporaryDirectory directory;
    writePackage(directory.path());
    // A broken installation may crash, so another process tries it first.
    const Trial trial = tryToPredict(directory.path(), nullptr);
    diagnosis.crashed = !trial.crash.empty();
    if (diagnosis.crashed) {
        throw VelmoraQuavin::MLFrameworkException(trial.crash);
    }
    const std::shared_ptr<VelmoraQuavin::QuavinModel> model =
        OpenedPackage(directory.path(), nullptr).load();
    require(model->getEngineInfo(diagnosis.engine));
    predictAndCompare(*model);
    // List before the model is destroyed: Windows unloads the device's library with the last model.
    listLibraries(diagnosis);
    diagnosis.status = {VelmoraQuavin::SUCCESS, ""};
}

Diagnosis diagnose() {
    Diagnosis diagnosis;
    try {
        tryEngine(diagnosis);
    } catch (...) {
        diagnosis.status = VelmoraQuavin::getStatusFromCurrentException();
        forgetNotes();  // the trial process has printed them
        listLibraries(diagnosis);
    }
    return diagnosis;
}

std::string capabilitiesText(const EngineInfo& engine) {
    std::string text;
    for (const VelmoraQuavin::String& capability : engine.capabilities) {
        text += (text.empty() ? "" : ", ") + printable(capability);
    }
    return text;
}

void print(const Diagnosis& diagnosis, const DoctorOptions& options) {
    const EngineInfo& engine = diagnosis.engine;
    std::vector<std::vector<std::string>> rows{{"quavin", VelmoraQuavin::getVersion()}};
    if (!engine.runtimeVersion.empty()) {
        rows.push_back({"runtime", printable(engine.runtimeVersion)});
        rows.push_back({"device", printable(engine.device)});
        rows.push_back({"processor", printable(engine.deviceName)});
        rows.push_back({"capabilities", capabilitiesText(engine)});
        rows.push_back({"precision", printable(engine.precision)});
        rows.push_back({"threads", std::to_string(engine.threads)});
        rows.push_back({"streams", std::to_string(engine.streams)});
    }
    std::vector<std::vector<std::string>> libraries{{"LIBRARY", "FILE"}};
    for (const Library& library : diagnosis.libraries) {
        libraries.push_back({printable(library.name), printable(library.file)});
    }
    for (const std::string& part : diagnosis.missing) {
        libraries.push_back({part, "not loaded"});
    }
    std::cout << table(rows) << '\n' << table(libraries) << '\n';
    if (diagnosis.status.ok()) {
        std::cout << inMood("ok", Mood::kGood, options.output)
                  << ": a small network loads and predicts\n";
    } else {
        std::cout << inMood("error", Mood::kBad, options.output)
                  << ": a small network failed to load and predict: status "
                  << diagnosis.status.getCode() << ": "
                  << printable(diagnosis.status.getDescription()) << '\n';
    }
}

void printJson(const Diagnosis& diagnosis) {
    const EngineInfo& engine = diagnosis.engine;
    JsonOutput json;
    json.beginObject();
    json.member("ok", diagnosis.status.ok());
    json.member("status", static_cast<int>(diagnosis.status.getCode()));
    json.member("problem", diagnosis.status.getDescription());
    json.member("quavin", VelmoraQuavin::getVersion());
    json.member("runtime", engine.runtimeVersion);
    json.member("device", engine.device);
    json.member("processor", engine.deviceName);
    json.texts("capabilities", engine.capabilities);
    json.member("precision", engine.precision);
    json.member("threads", engine.threads);
    json.member("streams", engine.streams);
    json.beginArray("libraries");
    for (const Library& library : diagnosis.libraries) {
        json.beginObject();
        json.member("name", library.name);
        json.member("file", library.file);
        json.endObject();
    }
    json.endArray();
    json.texts("missing", {diagnosis.missing.begin(), diagnosis.missing.end()});
    json.endObject();
    std::cout << json.text() << '\n';
}

void doctor(const DoctorOptions& options) {
    const Diagnosis diagnosis = diagnose();
    options.output.json ? printJson(diagnosis) : print(diagnosis, options);
    if (!diagnosis.status.ok()) {
        throw VelmoraQuavin::MLFrameworkException("This installation cannot predict");
    }
}

}  // namespace

void addDoctorCommand(CLI::App& app) {
    auto options = std::make_shared<DoctorOptions>();
    CLI::App* const command = app.add_subcommand(
        "doctor", "Shows which libraries and processor are used, and tests them.");
    addOutputOptions(*command, options->output);
    command->callback([options] { doctor(*options); });
}

}  // namespace quavin_tool
