#include "package/signature/public_key.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "package/signature/hex_digest.h"
#include "text/base64.h"

namespace VelmoraQuavin::internal {
namespace {

using platform::EcCurve;
using namespace std::string_view_literals;

constexpr std::string_view kBegin = "-----BEGIN PUBLIC KEY-----";
constexpr std::string_view kEnd = "-----END PUBLIC KEY-----";
constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::size_t kPemLine = 64;

constexpr std::array<EcCurve, 2> kCurves = {EcCurve::kP256, EcCurve::kP384};

bool isKeyOn(EcCurve curve, std::string_view info) {
    const std::string_view start = platform::infoStart(curve);
    return info.size() == start.size() + 2 * platform::coordinateSize(curve) &&
           info.substr(0, start.size()) == start;
}

// The prime that coordinates are counted modulo.
constexpr std::string_view primeOf(EcCurve curve) {
    return curve == EcCurve::kP256
               ? "\xFF\xFF\xFF\xFF\x00\x00\x00\x01\x00\x00\x00\x00\x00\x00\x00\x00"
                 "\x00\x00\x00\x00\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"sv
               : "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"
                 "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE"
                 "\xFF\xFF\xFF\xFF\x00\x00\x00\x00\x00\x00\x00\x00\xFF\xFF\xFF\xFF"sv;
}

bool hasCoordinatesOf(EcCurve curve, std::string_view info) {
    const std::string_view both = info.substr(platform::infoStart(curve).size());
    const std::size_t size = platform::coordinateSize(curve);
    // Texts compare as unsigned characters.
    return both.substr(0, size) < primeOf(curve) && both.substr(size) < primeOf(curve);
}

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

// The bytes of a text that is one PEM block.
std::optional<std::string> decodePem(std::string_view pem) {
    std::string_view body = trimmed(pem);
    if (body.size() < kBegin.size() + kEnd.size() || body.substr(0, kBegin.size()) != kBegin ||
        body.substr(body.size() - kEnd.size()) != kEnd) {
        return std::nullopt;
    }
    body.remove_prefix(kBegin.size());
    body.remove_suffix(kEnd.size());
    std::string bytes;
    return decodeBase64Lines(body, bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

std::string encodePem(std::string_view info) {
    const std::string digits = encodeBase64(info);
    std::string pem = std::string(kBegin) + '\n';
    for (std::size_t at = 0; at < digits.size(); at += kPemLine) {
        pem += digits.substr(at, kPemLine) + '\n';
    }
    return pem + std::string(kEnd) + '\n';
}

}  // namespace

std::optional<TrustedKey> readPublicKey(std::string_view pem, std::string& problem) {
    const std::optional<std::string> info = decodePem(pem);
    if (!info.has_value()) {
        problem = "it is not one block of PEM with a public key";
        return std::nullopt;
    }
    return readPublicKeyInfo(*info, problem);
}

std::optional<TrustedKey> readPublicKeyInfo(std::string_view info, std::string& problem) {
    const auto* const curve =
        std::find_if(kCurves.begin(), kCurves.end(),
                     [info](EcCurve candidate) { return isKeyOn(candidate, info); });
    if (curve == kCurves.end()) {
        problem = "it is not an uncompressed key on the curve P-256 or P-384";
        return std::nullopt;
    }
    // Systems differ in whether they look.
    if (!hasCoordinatesOf(*curve, info)) {
        problem = "a coordinate of its point is not below the prime of its curve";
        return std::nullopt;
    }
    TrustedKey trusted{{*curve, {info.begin(), info.end()}}, ""};
    platform::Sha256Digest digest{};
    const std::string canonical = encodePem(info);
    if (!platform::isUsable(trusted.key) ||
        !platform::sha256(canonical.data(), canonical.size(), digest)) {
        problem = "the system's cryptography refuses it: its point may not be on the curve";
        return std::nullopt;
    }
    trusted.hint = hexText(digest);
    return trusted;
}

}  // namespace VelmoraQuavin::internal
