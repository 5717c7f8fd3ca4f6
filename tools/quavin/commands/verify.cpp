#include <iostream>
#include <memory>
#include <string>

#include "command_line.h"
#include "key.h"
#include "package_check.h"
#include "printing.h"

namespace quavin_tool {
namespace {

struct Options {
    std::string package;
    KeyOptions key;
    OutputOptions output;
};

void printJson(const Findings& findings) {
    JsonOutput json;
    json.beginObject();
    json.member("ok", !findings.hasErrors());
    json.beginArray("findings");
    for (const Finding& finding : findings.all()) {
        json.beginObject();
        json.member("level", finding.isError ? "error" : "warning");
        json.member("where", finding.where);
        json.member("what", finding.what);
        json.member("advice", finding.advice);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    std::cout << json.text() << '\n';
}

void print(const Findings& findings, const Options& options) {
    for (const Finding& finding : findings.all()) {
        std::cout << inMood(finding.isError ? "error" : "warning",
                            finding.isError ? Mood::kBad : Mood::kWarning, options.output)
                  << ": " << printable(finding.where) << ": " << printable(finding.what) << "\n    "
                  << printable(finding.advice) << '\n';
    }
    if (!findings.hasErrors()) {
        say(inMood("ok", Mood::kGood, options.output) + ": " + options.package +
                (findings.all().empty() ? " loads, matches its network and predicts"
                                        : " can be used; see the warnings"),
            options.output);
    }
}

void verify(const Options& options) {
    const std::unique_ptr<Key> key = readKey(options.key);
    const Findings findings = checkPackage(options.package, key.get());
    options.output.json ? printJson(findings) : print(findings, options);
    if (findings.hasErrors()) {
        throw VelmoraQuavin::ModelMetaDataException(options.package + " cannot be used as it is");
    }
}

}  // namespace

void addVerifyCommand(CLI::App& app) {
    auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("verify", "Checks a package's files, manifest and network.");
    command->add_option("PACKAGE", options->package, "The package's directory")
        ->type_name("DIR")
        ->check(isPath())
        ->required();
    addKeyOptions(*command, options->key);
    addOutputOptions(*command, options->output);
    command->callback([options] { verify(*options); });
}

}  // namespace quavin_tool
