#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "package/signature/signing.h"
#include "tools/quavin/cli/parser_fwd.h"

namespace quavin_tool {

using VelmoraQuavin::internal::SignedFiles;
using VelmoraQuavin::internal::TrustedKey;

/// Where a private key comes from, and the passphrase that it may need.
struct SigningOptions {
    std::string file;
    std::string passphraseVariable;
    std::string passphraseFile;
    bool allowOpenFile = false;
};

/// Adds --passphrase-env and --passphrase-file. The option that names the key differs from command
/// to command.
void addPassphraseOptions(CLI::App& command, SigningOptions& options);

/// A private key to sign packages with, wiped on destruction.
class SigningKey {
public:
    /// Reads the key. For an encrypted one without a passphrase among the options it asks the user.
    /// @throws FileException, InvalidArgumentsException if there is no key that can sign.
    explicit SigningKey(const SigningOptions& options);

    /// What signatures call the key.
    const std::string& hint() const { return publicKey_.hint; }
    /// The content of a package's signature file.
    /// @throws InvalidArgumentsException for files that cannot be signed.
    std::string sign(const SignedFiles& files) const;

private:
    void read(std::string_view pem, const SigningOptions& options);

    VelmoraQuavin::internal::platform::EcPrivateKey key_;
    TrustedKey publicKey_;
};

/// A public key, and what the user calls it.
struct NamedKey {
    std::string name;
    std::string pem;
    TrustedKey key;
};

/// Reads a public key in PEM, which is called by its path.
/// @throws FileException, InvalidArgumentsException naming the file.
NamedKey readPublicKeyFile(const std::string& path);

}  // namespace quavin_tool
