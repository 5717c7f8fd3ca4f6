#include <iostream>
#include <memory>
#include <string>

#include "command_line.h"
#include "files.h"
#include "key.h"
#include "printing.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::Filepath;
using VelmoraQuavin::FileUtils;
using VelmoraQuavin::QuavinStatus;

struct Options {
    std::string archive;
    std::string directory;
    KeyOptions key;
    OutputOptions output;
};

QuavinStatus extract(const Options& options, const Bytes& archive, Filepath& destination) {
    if (!options.key.given()) {
        return FileUtils::extractTarball(archive.data(), archive.size(), destination);
    }
    const Key key(options.key);
    return FileUtils::extractSecuredTarball(archive.data(), archive.size(), key.bytes(),
                                            destination);
}

// What is encrypted, or was decrypted with another key, is noticed by its checksums.
QuavinStatus withAdvice(QuavinStatus status, const Options& options) {
    if (status.getCode() == VelmoraQuavin::TAR_CHECKSUM_MISMATCH) {
        status.setDescription(status.getDescription() +
                              (options.key.given()
                                   ? "; the key may be wrong"
                                   : "; an encrypted archive needs --key-file or --key-env"));
    }
    return status;
}

void unpack(const Options& options) {
    const Bytes archive = readFile(options.archive);
    const bool wasThere = isThere(options.directory);
    makeDirectories(options.directory);
    Filepath destination(options.directory);
    const QuavinStatus status = extract(options, archive, destination);
    if (!status.ok() && !wasThere) {
        removeIfEmpty(options.directory);
    }
    require(withAdvice(status, options));
    // Without a directory entry nothing has become the root.
    const bool hasRoot = *destination.c_str() != 0;
    const std::string root = hasRoot ? shellPath(destination) : options.directory;
    if (options.output.json) {
        JsonOutput json;
        json.beginObject();
        json.member("directory", options.directory);
        json.member("root", root);
        json.endObject();
        std::cout << json.text() << '\n';
    }
    say("Unpacked " + options.archive + " to " + printable(root), options.output);
}

}  // namespace

void addUnpackCommand(CLI::App& app) {
    auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("unpack", "Unpacks an archive below a directory.");
    command->add_option("FILE", options->archive, "The archive, plain or encrypted")
        ->type_name("")
        ->required();
    command->add_option("DIR", options->directory, "The directory, made where it is missing")
        ->type_name("")
        ->required();
    addKeyOptions(*command, options->key);
    addOutputOptions(*command, options->output);
    command->callback([options] { unpack(*options); });
}

}  // namespace quavin_tool
