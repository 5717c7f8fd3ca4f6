#include "platform/ecdsa_signing.h"

#include <algorithm>
#include <utility>

#include "platform/windows/cng_key.h"
#include "platform/windows/private_key_pem.h"
#include "text/der.h"

namespace VelmoraQuavin::internal::platform {
namespace {

std::string integer(std::string bytes) {
    bytes.erase(0, std::min(bytes.find_first_not_of('\0'), bytes.size() - 1));
    if ((static_cast<unsigned char>(bytes.front()) & 0x80U) != 0) {
        bytes.insert(bytes.begin(), '\0');  // otherwise it would be negative
    }
    return makeDer(DerTag::kInteger, bytes);
}

}  // namespace

struct EcPrivateKey::State {
    std::string publicInfo;
    EcCurve curve = EcCurve::kP256;
    CngProvider provider;
    CngKey key;  // goes before its provider
};

EcPrivateKey::EcPrivateKey() noexcept = default;
EcPrivateKey::EcPrivateKey(EcPrivateKey&& other) noexcept = default;
EcPrivateKey& EcPrivateKey::operator=(EcPrivateKey&& other) noexcept = default;
EcPrivateKey::~EcPrivateKey() = default;

PrivateKeyReading EcPrivateKey::read(std::string_view pem,
                                     std::optional<std::string_view> /*passphrase*/,
                                     std::string& problem) {
    EcPrivateNumbers numbers;
    problem = readPrivateKeyPem(pem, numbers);
    if (!problem.empty()) {
        return PrivateKeyReading::kRefused;
    }
    State state;
    state.curve = numbers.curve;
    state.publicInfo = std::string(infoStart(numbers.curve)) + numbers.coordinates;
    state.provider = openEcdsaProvider(numbers.curve);
    if (state.provider != nullptr) {
        state.key = importEcKey(state.provider, numbers.curve, numbers.coordinates.data(),
                                numbers.secret.data());
    }
    if (state.key == nullptr) {
        problem = "the system's cryptography refuses it";
        return PrivateKeyReading::kRefused;
    }
    state_ = std::make_unique<State>(std::move(state));
    return PrivateKeyReading::kDone;
}

std::string EcPrivateKey::publicInfo() const {
    return state_->publicInfo;
}

std::string EcPrivateKey::sign(const unsigned char* digest, std::size_t size) const {
    const std::size_t half = coordinateSize(state_->curve);
    std::string halves(2 * half, '\0');
    ULONG written = 0;
    const NTSTATUS status = ::BCryptSignHash(
        state_->key.get(), nullptr, const_cast<unsigned char*>(digest), static_cast<ULONG>(size),
        reinterpret_cast<PUCHAR>(halves.data()), static_cast<ULONG>(halves.size()), &written, 0);
    if (!BCRYPT_SUCCESS(status) || written != halves.size()) {
        return "";
    }
    return makeDer(DerTag::kSequence,
                   integer(halves.substr(0, half)) + integer(halves.substr(half)));
}

std::optional<std::size_t> askForPassphrase(const char* /*prompt*/, char* /*buffer*/,
                                            std::size_t /*capacity*/) noexcept {
    return std::nullopt;
}

}  // namespace VelmoraQuavin::internal::platform
