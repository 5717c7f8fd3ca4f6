#include <iostream>
#include <memory>
#include <string>

#include "package/archive/tar_reader.h"
#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/path_text.h"
#include "tools/quavin/io/require.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/key.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::Filepath;
using VelmoraQuavin::FileUtils;
using VelmoraQuavin::QuavinStatus;

struct UnpackOptions {
    std::string archive;
    std::string directory;
    KeyOptions key;
    OutputOptions output;
};

QuavinStatus extract(const WipedBytes& archive, const Key* key, Filepath& destination) {
    return key == nullptr ? FileUtils::extractTarball(archive.data(), archive.size(), destination)
                          : FileUtils::extractSecuredTarball(archive.data(), archive.size(),
                                                             key->bytes(), destination);
}

// Encrypted archives, or those decrypted with a wrong key, fail the checksum test.
QuavinStatus withAdvice(QuavinStatus status, const UnpackOptions& options) {
    if (status.getCode() == VelmoraQuavin::TAR_CHECKSUM_MISMATCH) {
        status.setDescription(status.getDescription() +
                              (options.key.given()
                                   ? "; the key may be wrong"
                                   : "; an encrypted archive needs --key-file or --key-env"));
    }
    return status;
}

void unpack(const UnpackOptions& options) {
    const std::unique_ptr<Key> key = readKey(options.key);
    const WipedBytes archive = readFile(options.archive);
    if (key == nullptr && VelmoraQuavin::internal::isFalseTarEnd(archive.data(), archive.size())) {
        throw VelmoraQuavin::Exception(
            options.archive +
                " is not a tar archive; an encrypted one needs --key-file or --key-env",
            VelmoraQuavin::TAR_CHECKSUM_MISMATCH);
    }
    NewDirectories directories(options.directory);
    Filepath destination(options.directory);
    require(withAdvice(extract(archive, key.get(), destination), options));
    directories.keep();
    // Without a directory entry there is no root.
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
    auto options = std::make_shared<UnpackOptions>();
    CLI::App* const command = app.add_subcommand("unpack", "Unpacks an archive into a directory.");
    command->add_option("FILE", options->archive, "The archive, plain or encrypted")
        ->type_name("")
        ->check(isPath())
        ->required();
    command->add_option("DIR", options->directory, "The directory, created if it is missing")
        ->type_name("")
        ->check(isPath())
        ->required();
    addKeyOptions(*command, options->key);
    addOutputOptions(*command, options->output);
    command->callback([options] { unpack(*options); });
}

}  // namespace quavin_tool
