#include "package/signature/signing.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <optional>
#include <string_view>
#include <vector>

#include "package/signature/bundle.h"
#include "package/signature/hex_digest.h"
#include "package/signature/verify_signature.h"
#include "quavin/status.h"
#include "text/base64.h"

namespace VelmoraQuavin::internal {
namespace {

class Json {
public:
    Json& key(std::string_view name) {
        writer_.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
        return *this;
    }
    void string(std::string_view text) {
        writer_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
    }
    void boolean(bool value) { writer_.Bool(value); }
    template <typename Members>
    void object(const Members& members) {
        writer_.StartObject();
        members();
        writer_.EndObject();
    }
    template <typename Elements>
    void array(const Elements& elements) {
        writer_.StartArray();
        elements();
        writer_.EndArray();
    }
    std::string text() const { return {buffer_.GetString(), buffer_.GetSize()}; }

private:
    rapidjson::StringBuffer buffer_;
    rapidjson::Writer<rapidjson::StringBuffer> writer_{buffer_};
};

[[noreturn]] void failCryptography() {
    throw Exception("The package cannot be signed: the system's cryptography fails");
}

void requireSignable(const SignedFiles& files) {
    for (const auto& [name, digest] : files) {
        requireSignableName(name);
    }
    if (const auto twins = findTwins(files)) {
        throw InvalidArgumentsException('"' + twins->first + "\" and \"" + twins->second +
                                        "\" cannot be signed together: their names differ only in "
                                        "case, which some systems ignore");
    }
}

std::string digestOfAll(const SignedFiles& files) {
    std::vector<platform::Sha256Digest> digests;
    for (const auto& file : files) {
        digests.push_back(file.second);
    }
    const std::optional<platform::Sha256Digest> digest = digestOfDigests(digests);
    if (!digest.has_value()) {
        failCryptography();
    }
    return hexText(*digest);
}

std::string writeStatement(const SignedFiles& files) {
    Json json;
    json.object([&] {
        json.key("_type").string(kStatementType);
        json.key("subject").array([&] {
            json.object([&] {
                json.key("name").string("package");
                json.key("digest").object([&] { json.key(kSha256).string(digestOfAll(files)); });
            });
        });
        json.key("predicateType").string(kPredicateType);
        json.key("predicate").object([&] {
            json.key("serialization").object([&] {
                json.key("method").string("files");
                json.key("hash_type").string(kSha256);
                json.key("allow_symlinks").boolean(false);
                json.key("ignore_paths").array([&] {
                    for (const std::string& path : unsignedPaths()) {
                        json.string(path);
                    }
                });
            });
            json.key("resources").array([&] {
                for (const auto& file : files) {
                    json.object([&] {
                        json.key("name").string(file.first);
                        json.key("algorithm").string(kSha256);
                        json.key("digest").string(hexText(file.second));
                    });
                }
            });
        });
    });
    return json.text();
}

std::string writeBundle(const Bundle& bundle) {
    Json json;
    json.object([&] {
        json.key("mediaType").string(kMediaType);
        json.key("verificationMaterial").object([&] {
            json.key("publicKey").object([&] { json.key("hint").string(bundle.hint); });
            json.key("tlogEntries").array([] {});
        });
        json.key("dsseEnvelope").object([&] {
            json.key("payload").string(encodeBase64(bundle.payload));
            json.key("payloadType").string(kPayloadType);
            json.key("signatures").array([&] {
                json.object([&] {
                    json.key("sig").string(encodeBase64(bundle.signature));
                    json.key("keyid").string("");
                });
            });
        });
    });
    return json.text();
}

}  // namespace

const std::vector<std::string>& unsignedPaths() {
    static const std::vector<std::string> paths = {kSignatureName, ".git", ".gitattributes",
                                                   ".github", ".gitignore"};
    return paths;
}

void requireSignableName(const std::string& name) {
    if (!isPlainName(name)) {
        throw InvalidArgumentsException("\"" + name +
                                        "\" cannot be signed: not every system can have a file of "
                                        "this name");
    }
}

std::string signFiles(const SignedFiles& files, const platform::EcPrivateKey& key,
                      const TrustedKey& publicKey) {
    requireSignable(files);
    Bundle bundle;
    bundle.hint = publicKey.hint;
    bundle.payload = writeStatement(files);
    const std::vector<unsigned char> digest =
        payloadDigest(bundle.payload, hashFor(publicKey.key.curve));
    if (!digest.empty()) {
        bundle.signature = key.sign(digest.data(), digest.size());
    }
    if (bundle.signature.empty()) {
        failCryptography();
    }
    std::string text = writeBundle(bundle);
    try {
        static_cast<void>(verifySignature(text, {publicKey}));
    } catch (const SignatureException&) {
        throw InvalidArgumentsException(
            "The package cannot be signed: the private key does not seem to belong to its public "
            "half");
    }
    return text;
}

}  // namespace VelmoraQuavin::internal
