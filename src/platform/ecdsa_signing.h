#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VelmoraQuavin::internal::platform {

/// What became of reading a private key.
enum class PrivateKeyReading {
    kDone,
    kNeedsPassphrase,  ///< It is encrypted, and there was no passphrase.
    kRefused
};

/// A private key to sign with, wiped on destruction. For tools: the library itself only verifies.
/// There is a key from the first read() that succeeds; only from then on may it be asked for
/// anything else.
class EcPrivateKey {
public:
    EcPrivateKey() noexcept;
    EcPrivateKey(EcPrivateKey&& other) noexcept;
    EcPrivateKey& operator=(EcPrivateKey&& other) noexcept;
    ~EcPrivateKey();

    /// Reads a key in PEM, as PKCS #8 or SEC 1. On Windows encrypted keys are refused, and so are
    /// those without their public half.
    /// @param passphrase decrypts the key if it is encrypted; may be nothing.
    /// @param problem receives a human-readable reason for refusing the key, in which nothing of
    ///        `pem` and `passphrase` appears.
    PrivateKeyReading read(std::string_view pem, std::optional<std::string_view> passphrase,
                           std::string& problem);
    /// The public key as a SubjectPublicKeyInfo in DER. Only where readPublicKeyInfo() accepts it
    /// is this a key that can sign.
    std::string publicInfo() const;
    /// Signs a digest with ECDSA.
    /// @param digest `size` bytes of the hash for the key's curve.
    /// @return an ECDSA-Sig-Value in DER; empty if the cryptography fails.
    std::string sign(const unsigned char* digest, std::size_t size) const;

private:
    struct State;

    std::unique_ptr<State> state_;
};

/// Asks the user for a passphrase in the terminal, which does not show it.
/// @param buffer receives the passphrase and a zero byte behind it; the caller wipes it.
/// @param capacity the size of `buffer`.
/// @return the passphrase's length; nothing without a terminal, after an interruption, if it does
///         not fit, or on Windows.
std::optional<std::size_t> askForPassphrase(const char* prompt, char* buffer,
                                            std::size_t capacity) noexcept;

}  // namespace VelmoraQuavin::internal::platform
