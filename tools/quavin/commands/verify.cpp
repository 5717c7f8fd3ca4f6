#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "package/signature/verify_signature.h"
#include "tools/quavin/check/package_check.h"
#include "tools/quavin/check/signature_check.h"
#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/engine_options.h"
#include "tools/quavin/cli/library.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/package/key.h"
#include "tools/quavin/package/opened_package.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::internal::kSignatureName;

struct VerifyOptions {
    std::string package;
    std::vector<std::string> publicKeys;
    KeyOptions key;
    VelmoraQuavin::EngineOptions engine;
    OutputOptions output;
};

/// What was found, and who signed the package.
struct Verdict {
    Findings findings;
    std::string signer;  // the public key's file; empty if nobody is known to have signed it
};

void printJson(const Verdict& verdict) {
    const Findings& findings = verdict.findings;
    JsonOutput json;
    json.beginObject();
    json.member("ok", !findings.hasErrors());
    json.member("authenticated", !verdict.signer.empty());
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

void print(const Verdict& verdict, const VerifyOptions& options) {
    const Findings& findings = verdict.findings;
    for (const Finding& finding : findings.all()) {
        std::cout << inMood(finding.isError ? "error" : "warning",
                            finding.isError ? Mood::kBad : Mood::kWarning, options.output)
                  << ": " << shown(finding.where) << ": " << shown(finding.what) << "\n    "
                  << shown(finding.advice) << '\n';
    }
    if (findings.hasErrors()) {
        return;
    }
    const std::string result =
        options.package + (findings.all().empty() ? " loads, matches its network and predicts"
                                                  : " can be used; see the warnings");
    // "ok" alone would pass for more than was checked.
    say(verdict.signer.empty() ? inMood("usable", Mood::kGood, options.output) + ": " + result +
                                     ". Who made it was not checked: that needs --public-key"
                               : inMood("ok", Mood::kGood, options.output) + ": " + result +
                                     ", and is what the key in " + verdict.signer + " signed",
        options.output);
}

// From then on the library refuses what they did not sign.
std::vector<NamedKey> trustPublicKeys(const std::vector<std::string>& paths) {
    std::vector<NamedKey> keys;
    std::vector<VelmoraQuavin::String> pems;
    for (const std::string& path : paths) {
        keys.push_back(readPublicKeyFile(path));
        pems.emplace_back(keys.back().pem);
    }
    trustKeys(pems);
    return keys;
}

Verdict check(const VerifyOptions& options, const Key* key) {
    const std::vector<NamedKey> publicKeys = trustPublicKeys(options.publicKeys);
    std::optional<OpenedPackage> package;
    Verdict verdict;
    Findings& findings = verdict.findings;
    try {
        package.emplace(options.package, bytesOf(key));
    } catch (const ArchiveKeyException& problem) {
        findings.error("package", problem.what(),
                       key == nullptr
                           ? "Pass the directory that contains manifest.json, or an archive of it; "
                             "pass the key of an encrypted one with --key-file or --key-env."
                           : kWrongArchiveKeyAdvice);
        return verdict;
    } catch (const VelmoraQuavin::Exception& problem) {
        findings.error("package", problem.what(),
                       "Pass the directory that contains manifest.json, or an archive of it.");
        return verdict;
    }
    if (!publicKeys.empty()) {
        verdict.signer = checkSignature(*package, publicKeys, findings);
    }
    if (!findings.hasErrors()) {
        findings = checkPackage(options.package, *package, key, options.engine);
        if (findings.concern(kSignatureName)) {
            verdict.signer.clear();
        }
    }
    return verdict;
}

void verify(const VerifyOptions& options) {
    if (options.engine.mapWeights && !options.publicKeys.empty()) {
        throw CLI::ValidationError("--map-weights",
                                   "excludes --public-key: mapped bytes may change after they "
                                   "were checked");
    }
    const std::unique_ptr<Key> key = readKey(options.key);
    const Verdict verdict = check(options, key.get());
    options.output.json ? printJson(verdict) : print(verdict, options);
    if (verdict.findings.hasErrors()) {
        throw VelmoraQuavin::ModelMetaDataException(options.package + " cannot be used as it is");
    }
}

}  // namespace

void addVerifyCommand(CLI::App& app) {
    auto options = std::make_shared<VerifyOptions>();
    CLI::App* const command = app.add_subcommand(
        "verify", "Checks a package's files, manifest and network, and who signed it.");
    addPackageArgument(*command, options->package);
    command
        ->add_option("--public-key", options->publicKeys,
                     "Check that the owner of the public key in FILE, in PEM, signed the package; "
                     "may be repeated: one of the keys is enough")
        ->type_name("FILE")
        ->check(isPath())
        ->allow_extra_args(false);
    addKeyOptions(*command, options->key);
    addEngineOptions(*command, options->engine);
    addOutputOptions(*command, options->output);
    command->callback([options] { verify(*options); });
}

}  // namespace quavin_tool
