#include "platform/ecdsa_signing.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstring>

#include "platform/posix/openssl_context.h"
#include "platform/posix/openssl_key.h"

namespace VelmoraQuavin::internal::platform {
namespace {

struct BioDelete {
    void operator()(BIO* bio) const noexcept { BIO_free(bio); }
};

struct PassphraseRequest {
    std::optional<std::string_view> passphrase;
    bool asked = false;
};

// OpenSSL's callback: returns the passphrase's length, or less than 0 if there is none.
int givePassphrase(char* buffer, int capacity, int /*writing*/, void* user) {
    auto* const request = static_cast<PassphraseRequest*>(user);
    request->asked = true;
    if (!request->passphrase.has_value() ||
        request->passphrase->size() > static_cast<std::size_t>(std::max(capacity, 0))) {
        return -1;
    }
    std::copy(request->passphrase->begin(), request->passphrase->end(), buffer);
    return static_cast<int>(request->passphrase->size());
}

}  // namespace

struct EcPrivateKey::State {
    OpenSslKey key;
};

EcPrivateKey::EcPrivateKey() noexcept = default;
EcPrivateKey::EcPrivateKey(EcPrivateKey&& other) noexcept = default;
EcPrivateKey& EcPrivateKey::operator=(EcPrivateKey&& other) noexcept = default;
EcPrivateKey::~EcPrivateKey() = default;

PrivateKeyReading EcPrivateKey::read(std::string_view pem,
                                     std::optional<std::string_view> passphrase,
                                     std::string& problem) {
    const CryptoErrorMark mark;
    if (pem.empty() || pem.size() > INT_MAX) {
        problem = "it holds no private key in PEM";
        return PrivateKeyReading::kRefused;
    }
    const std::unique_ptr<BIO, BioDelete> bio(
        BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
    PassphraseRequest request{passphrase};
    OpenSslKey key(bio == nullptr
                       ? nullptr
                       : PEM_read_bio_PrivateKey(bio.get(), nullptr, givePassphrase, &request));
    if (key != nullptr) {
        state_ = std::make_unique<State>(State{std::move(key)});
        return PrivateKeyReading::kDone;
    }
    if (request.asked && !passphrase.has_value()) {
        return PrivateKeyReading::kNeedsPassphrase;
    }
    problem = request.asked ? "its passphrase is another one, or it is damaged"
                            : "it holds no private key in PEM";
    return PrivateKeyReading::kRefused;
}

std::string EcPrivateKey::publicInfo() const {
    const CryptoErrorMark mark;
    unsigned char* info = nullptr;
    const int size = i2d_PUBKEY(state_->key.get(), &info);
    std::string copy;
    if (size > 0) {
        copy.assign(reinterpret_cast<const char*>(info), static_cast<std::size_t>(size));
        OPENSSL_free(info);
    }
    return copy;
}

std::string EcPrivateKey::sign(const unsigned char* digest, std::size_t size) const {
    const CryptoErrorMark mark;
    const OpenSslKeyContext context(EVP_PKEY_CTX_new(state_->key.get(), nullptr));
    std::size_t length = 0;
    if (context == nullptr || EVP_PKEY_sign_init(context.get()) != 1 ||
        EVP_PKEY_sign(context.get(), nullptr, &length, digest, size) != 1) {
        return "";
    }
    std::string signature(length, '\0');
    if (EVP_PKEY_sign(context.get(), reinterpret_cast<unsigned char*>(signature.data()), &length,
                      digest, size) != 1) {
        return "";
    }
    signature.resize(length);  // what was asked for first was only the most it can have
    return signature;
}

std::optional<std::size_t> askForPassphrase(const char* prompt, char* buffer,
                                            std::size_t capacity) noexcept {
    if (capacity == 0) {
        return std::nullopt;
    }
    const CryptoErrorMark mark;
    // Without a terminal OpenSSL would read standard input.
    const int terminal = ::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (terminal < 0) {
        return std::nullopt;
    }
    ::close(terminal);
    // Shows the terminal's input again even if a signal ends the process.
    // OpenSSL writes a zero behind as many characters as it is allowed.
    const int longest = static_cast<int>(std::min(capacity - 1, std::size_t{INT_MAX}));
    return EVP_read_pw_string_min(buffer, 0, longest, prompt, 0) == 0
               ? std::optional(::strnlen(buffer, capacity))
               : std::nullopt;
}

}  // namespace VelmoraQuavin::internal::platform
