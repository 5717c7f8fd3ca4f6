#include "package/signature/bundle.h"

#include <optional>

#include "package/signature/signature_problems.h"
#include "package/signature/strict_json.h"
#include "text/base64.h"

namespace VelmoraQuavin::internal {
namespace {

const JsonValue& requireObject(const JsonValue& parent, const char* key,
                               std::initializer_list<std::string_view> members) {
    const JsonValue* const object = findObject(parent, key);
    if (object == nullptr || !hasOnly(*object, members)) {
        refuseBundle('"' + std::string(key) + "\" is missing or malformed");
    }
    return *object;
}

std::string requireBytes(const JsonValue& object, const char* key) {
    const std::optional<std::string_view> text = findString(object, key);
    std::optional<std::string> bytes = text.has_value() ? decodeBase64(*text) : std::nullopt;
    if (!bytes.has_value()) {
        refuseBundle('"' + std::string(key) + "\" is not base64");
    }
    return *std::move(bytes);
}

// A string, or nothing at all.
std::string optionalText(const JsonValue& object, const char* key) {
    if (findPresent(object, key) == nullptr) {
        return "";
    }
    const std::optional<std::string_view> text = findString(object, key);
    if (!text.has_value()) {
        refuseBundle('"' + std::string(key) + "\" is not a string");
    }
    return std::string(*text);
}

// Returns the hint.
std::string readMaterial(const JsonValue& bundle) {
    const JsonValue& material =
        requireObject(bundle, "verificationMaterial",
                      {"publicKey", "tlogEntries", "certificate", "x509CertificateChain",
                       "timestampVerificationData"});
    for (const char* const other :
         {"certificate", "x509CertificateChain", "timestampVerificationData"}) {
        if (findPresent(material, other) != nullptr) {
            refuseMethod('"' + std::string(other) + '"');
        }
    }
    if (const JsonValue* const entries = findMember(material, "tlogEntries")) {
        if (!entries->IsArray()) {
            refuseBundle("\"tlogEntries\" is not an array");
        }
        if (!entries->Empty()) {
            refuseMethod("\"tlogEntries\"");
        }
    }
    // Older signers add the last two.
    return optionalText(requireObject(material, "publicKey", {"hint", "rawBytes", "keyDetails"}),
                        "hint");
}

const JsonValue& onlySignature(const JsonValue& envelope) {
    const JsonValue* const signatures = findArray(envelope, "signatures");
    if (signatures == nullptr || signatures->Size() != 1) {
        refuseBundle("there must be exactly one signature");
    }
    const JsonValue& signature = (*signatures)[0];
    if (!signature.IsObject() || !hasOnly(signature, {"sig", "keyid"})) {
        refuseBundle("\"signatures\" is malformed");
    }
    optionalText(signature, "keyid");
    return signature;
}

}  // namespace

std::vector<unsigned char> payloadDigest(std::string_view payload,
                                         platform::HashAlgorithm algorithm) {
    const std::string start = "DSSEv1 " + std::to_string(kPayloadType.size()) + ' ' +
                              std::string(kPayloadType) + ' ' + std::to_string(payload.size()) +
                              ' ';
    platform::MessageDigest signedBytes(algorithm);
    signedBytes.add(start.data(), start.size());
    signedBytes.add(payload.data(), payload.size());
    std::vector<unsigned char> digest(digestSize(algorithm));
    return signedBytes.finish(digest.data()) ? digest : std::vector<unsigned char>();
}

Bundle readBundle(std::string_view text) {
    JsonDocument document;
    if (const char* const problem = parseStrictly(text, document)) {
        refuseBundle(problem);
    }
    if (!isString(document, "mediaType", kMediaType)) {
        refuseBundle("its media type is not " + std::string(kMediaType));
    }
    if (!hasOnly(document,
                 {"mediaType", "verificationMaterial", "dsseEnvelope", "messageSignature"}) ||
        findPresent(document, "messageSignature") != nullptr) {
        refuseBundle("it has members that do not belong there");
    }
    Bundle bundle;
    bundle.hint = readMaterial(document);
    const JsonValue& envelope =
        requireObject(document, "dsseEnvelope", {"payload", "payloadType", "signatures"});
    if (!isString(envelope, "payloadType", kPayloadType)) {
        refuseBundle("its payload's type is not " + std::string(kPayloadType));
    }
    bundle.signature = requireBytes(onlySignature(envelope), "sig");
    bundle.payload = requireBytes(envelope, "payload");
    return bundle;
}

}  // namespace VelmoraQuavin::internal
