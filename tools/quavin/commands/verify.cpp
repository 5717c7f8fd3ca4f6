#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "tools/quavin/check/package_check.h"
#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/engine_options.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/package/key.h"
#include "tools/quavin/package/opened_package.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {
namespace {

struct Options {
    std::string package;
    KeyOptions key;
    VelmoraQuavin::EngineOptions engine;
    OutputOptions output;
};

void printJson(const Findings& findings) {
    JsonOutput json;
    json.beginObject();
    json.member("ok", !findings.hasErrors());
    // Nothing in a package proves who made it.
    json.member("authenticated", false);
    json.beginArray("findings");
    for (const Finding& finding : findings.all()) {
        json.beginObject();
        json.member("level", finding.isError ? "error" : "warning");
        json.member("where", withoutKeys(finding.where));
        json.member("what", withoutKeys(finding.what));
        json.member("advice", withoutKeys(finding.advice));
        json.endObject();
    }
    json.endArray();
    json.endObject();
    std::cout << json.text() << '\n';
}

std::string shown(const std::string& text) {
    return withoutKeys(printable(text));
}

void print(const Findings& findings, const Options& options) {
    for (const Finding& finding : findings.all()) {
        std::cout << inMood(finding.isError ? "error" : "warning",
                            finding.isError ? Mood::kBad : Mood::kWarning, options.output)
                  << ": " << shown(finding.where) << ": " << shown(finding.what) << "\n    "
                  << shown(finding.advice) << '\n';
    }
    if (!findings.hasErrors()) {
        say(inMood("ok", Mood::kGood, options.output) + ": " + options.package +
                (findings.all().empty() ? " loads, matches its network and predicts"
                                        : " can be used; see the warnings") +
                "; its origin was not checked",
            options.output);
    }
}

Findings check(const Options& options, const Key* key) {
    std::optional<OpenedPackage> package;
    Findings findings;
    try {
        package.emplace(options.package, bytesOf(key));
    } catch (const ArchiveKeyException& problem) {
        findings.error("package", problem.what(),
                       key == nullptr
                           ? "Pass the directory that contains manifest.json, or an archive of it; "
                             "pass the key of an encrypted one with --key-file or --key-env."
                           : kWrongArchiveKeyAdvice);
        return findings;
    } catch (const VelmoraQuavin::Exception& problem) {
        findings.error("package", problem.what(),
                       "Pass the directory that contains manifest.json, or an archive of it.");
        return findings;
    }
    return checkPackage(options.package, *package, key, options.engine);
}

void verify(const Options& options) {
    const std::unique_ptr<Key> key = readKey(options.key);
    const Findings findings = check(options, key.get());
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
    addPackageArgument(*command, options->package);
    addKeyOptions(*command, options->key);
    addEngineOptions(*command, options->engine);
    addOutputOptions(*command, options->output);
    command->callback([options] { verify(*options); });
}

}  // namespace quavin_tool
