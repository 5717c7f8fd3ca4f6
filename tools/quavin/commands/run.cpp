#include <memory>
#include <string>
#include <vector>

#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/engine_options.h"
#include "tools/quavin/io/input_files.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/output_files.h"
#include "tools/quavin/package/key.h"
#include "tools/quavin/package/opened_package.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {
namespace {

struct RunOptions {
    std::string package;
    std::vector<std::string> inputs;
    std::string directory;
    bool raw = false;
    Casts casts = Casts::kRefused;
    KeyOptions key;
    VelmoraQuavin::EngineOptions engine;
    OutputOptions output;
};

void run(const RunOptions& options) {
    // Before anything is read: incorrect usage has its own exit status.
    const InputFiles files = parseInputs(options.inputs);
    requirePortableName(options.directory, "choose another --output");
    const std::unique_ptr<Key> key = readKey(options.key);
    const std::shared_ptr<VelmoraQuavin::QuavinModel> model =
        OpenedPackage(options.package, bytesOf(key.get())).load(options.engine);
    const Features features = predict(
        *model, readInputs(*model, files, options.raw, MissingInputs::kRefused, options.casts));
    std::vector<Output> outputs = summarizeOutputs(features);
    if (!options.directory.empty()) {
        writeOutputs(outputs, options.directory, options.raw);
    }
    options.output.json ? printOutputsAsJson(outputs) : printOutputs(outputs);
}

}  // namespace

void addRunCommand(CLI::App& app) {
    auto options = std::make_shared<RunOptions>();
    CLI::App* const command =
        app.add_subcommand("run", "Predicts once from files, and prints or writes the outputs.");
    addPackageArgument(*command, options->package);
    addInputOption(*command, options->inputs)->required();
    command
        ->add_option("-o,--output", options->directory,
                     "The directory for outputs, created if missing; by default they are printed")
        ->type_name("DIR")
        ->check(isPath());
    CLI::Option* const raw = addRawOption(*command, options->raw);
    addCastOption(*command, options->casts)->excludes(raw);
    addKeyOptions(*command, options->key);
    addEngineOptions(*command, options->engine);
    addOutputOptions(*command, options->output);
    command->callback([options] { run(*options); });
}

}  // namespace quavin_tool
