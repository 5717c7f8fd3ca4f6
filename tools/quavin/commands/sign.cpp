#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "package/path/package_path.h"
#include "package/signature/verify_signature.h"
#include "platform/private_file.h"
#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/path_text.h"
#include "tools/quavin/package/package.h"
#include "tools/quavin/package/package_digests.h"
#include "tools/quavin/package/signing_key.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::InvalidArgumentsException;
using VelmoraQuavin::internal::kSignatureName;
using VelmoraQuavin::internal::packagePath;
using VelmoraQuavin::internal::Statement;

struct SignOptions {
    std::string package;
    SigningOptions key;
    OutputOptions output;
};

// A signature that lets nothing load would be of no use.
void requireComponents(const Metadata& metadata, const SignedFiles& files,
                       const Statement& statement) {
    for (const std::string& missing : componentsMissingIn(files, *metadata)) {
        throw InvalidArgumentsException("The manifest names \"" + missing + "\", which is " +
                                        (statement.leavesOut(packagePath(missing))
                                             ? "Git's, and never signed"
                                             : "not in the package"));
    }
}

void sign(const SignOptions& options) {
    std::error_code ignored;
    if (std::filesystem::is_regular_file(std::filesystem::u8path(options.package), ignored)) {
        throw InvalidArgumentsException(
            options.package +
            " is not a directory: sign a package before it is archived, or pack it with "
            "\"quavin pack --sign\"");
    }
    const Metadata metadata = readManifest(options.package);
    const std::string path = join(options.package, kSignatureName);
    if (isThere(path)) {
        throw InvalidArgumentsException("The package is signed already: remove " + path +
                                        " to sign it again");
    }
    const SigningKey key(options.key);
    // Otherwise a signature that was interrupted would be signed itself.
    VelmoraQuavin::internal::platform::removeUnfinishedFiles(options.package);
    const Statement statement{{}, VelmoraQuavin::internal::unsignedPaths()};
    const SignedFiles files = digestsInDirectory(options.package, statement);
    requireComponents(metadata, files, statement);
    writeNewFile(path, key.sign(files));
    say("Signed the " + std::to_string(files.size()) + " files of " + options.package +
            " with the key " + key.hint(),
        options.output);
}

}  // namespace

void addSignCommand(CLI::App& app) {
    auto options = std::make_shared<SignOptions>();
    CLI::App* const command = app.add_subcommand("sign", "Signs all files of a package.");
    command->add_option("PACKAGE", options->package, "The package's directory")
        ->type_name("DIR")
        ->check(isPath())
        ->required();
    command
        ->add_option("--private-key", options->key.file,
                     "Sign with the private key in FILE, in PEM, on the curve P-256 or P-384")
        ->type_name("FILE")
        ->check(isPath())
        ->required();
    addPassphraseOptions(*command, options->key);
    command->add_flag("--allow-open-key-file", options->key.allowOpenFile,
                      "Accept a key file that users other than its owner may read or change");
    addQuietOption(*command, options->output);
    command->callback([options] { sign(*options); });
}

}  // namespace quavin_tool
