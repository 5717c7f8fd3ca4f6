#include "package/signature/statement.h"

#include <algorithm>
#include <map>

#include "package/path/package_path.h"
#include "package/signature/hex_digest.h"
#include "package/signature/signature_problems.h"
#include "package/signature/strict_json.h"
#include "text/unicode.h"

namespace VelmoraQuavin::internal {
namespace {

using platform::Sha256Digest;

// The digest of the whole model, as the statement claims it.
Sha256Digest readSubject(const JsonValue& statement) {
    const JsonValue* const subjects = findArray(statement, "subject");
    if (subjects == nullptr || subjects->Size() != 1 || !findString((*subjects)[0], "name")) {
        refuseBundle("its statement must have one subject with a name");
    }
    const JsonValue* const digests = findObject((*subjects)[0], "digest");
    const auto text = digests == nullptr ? std::nullopt : findString(*digests, kSha256.data());
    const auto digest = text.has_value() ? readHexDigest(*text) : std::nullopt;
    if (!digest.has_value()) {
        refuseBundle("its subject has no SHA-256");
    }
    return *digest;
}

// Returns how the model was serialized.
const JsonValue& requireFilesBySha256(const JsonValue& predicate) {
    const JsonValue* const serialization = findObject(predicate, "serialization");
    const JsonValue* const links =
        serialization == nullptr ? nullptr : findMember(*serialization, "allow_symlinks");
    if (links == nullptr || !links->IsBool()) {
        refuseBundle("its statement does not say how the model was serialized");
    }
    if (!isString(*serialization, "method", "files")) {
        refuseMethod("its serialization is not of whole files");
    }
    if (!isString(*serialization, "hash_type", kSha256)) {
        refuseMethod("its hash is not SHA-256");
    }
    return *serialization;
}

std::vector<std::string> readIgnoredPaths(const JsonValue& serialization) {
    std::vector<std::string> paths;
    const JsonValue* const listed = findMember(serialization, "ignore_paths");
    if (listed == nullptr) {
        return paths;
    }
    if (!listed->IsArray()) {
        refuseBundle("\"ignore_paths\" is not an array");
    }
    for (const JsonValue& element : listed->GetArray()) {
        if (!element.IsString()) {
            refuseBundle("\"ignore_paths\" holds something else than strings");
        }
        const std::string_view text = textOf(element);
        std::string path = packagePath(text);  // signers on Windows separate with "\"
        const bool isRelative = text.find_first_of("/\\") != 0;
        if (isRelative && isPlainName(path)) {  // no other means a file in the package
            paths.push_back(std::move(path));
        }
    }
    return paths;
}

class ResourceList {
public:
    void add(const JsonValue& resource) {
        const auto name = findString(resource, "name");
        const auto text = findString(resource, "digest");
        const auto digest = text.has_value() ? readHexDigest(*text) : std::nullopt;
        if (!name.has_value() || !digest.has_value()) {
            refuseBundle("a resource has no name or no digest");
        }
        if (!isString(resource, "algorithm", kSha256)) {
            refuseMethod("its hash is not SHA-256");
        }
        if (!isPlainName(*name)) {
            refuseBundle("the name of a resource is not a plain relative path");
        }
        if (!files_.emplace(*name, *digest).second) {
            refuseTwins();
        }
        digests_.push_back(*digest);
    }
    // In the order of the list.
    Sha256Digest digestOfAll() const {
        const std::optional<Sha256Digest> digest = digestOfDigests(digests_);
        if (!digest.has_value()) {
            refuseBundle("the system's cryptography fails");
        }
        return *digest;
    }
    SignedFiles takeFiles() {
        if (findTwins(files_).has_value()) {
            refuseTwins();
        }
        return std::move(files_);
    }

private:
    [[noreturn]] static void refuseTwins() {
        refuseBundle("two resources have names that differ at most in case");
    }

    SignedFiles files_;
    std::vector<Sha256Digest> digests_;
};

}  // namespace

bool isPlainName(std::string_view name) {
    const std::string padded = '/' + std::string(name) + '/';
    // Half a character, written as an escape, becomes text that is not UTF-8.
    return !name.empty() && isUtf8(name) && packagePath(name) == name &&
           // On Windows a colon leads to another drive, or into a stream of the file.
           name.find_first_of(std::string_view("\\:\0", 3)) == std::string_view::npos &&
           padded.find("/../") == std::string::npos;
}

std::optional<Sha256Digest> digestOfDigests(const std::vector<Sha256Digest>& digests) {
    platform::MessageDigest all(platform::HashAlgorithm::kSha256);
    for (const Sha256Digest& digest : digests) {
        all.add(digest.data(), digest.size());
    }
    Sha256Digest digest{};
    return all.finish(digest.data()) ? std::optional(digest) : std::nullopt;
}

std::optional<std::pair<std::string, std::string>> findTwins(const SignedFiles& files) {
    std::map<std::string, std::string> byLowerCase;
    for (const auto& file : files) {
        const auto [other, isNew] = byLowerCase.emplace(toAsciiLower(file.first), file.first);
        if (!isNew) {
            return std::pair(other->second, file.first);
        }
    }
    return std::nullopt;
}

bool Statement::leavesOut(const std::string& name) const {
    return files.count(name) == 0 &&
           std::any_of(ignoredPaths.begin(), ignoredPaths.end(), [&name](const std::string& path) {
               return (name + '/').compare(0, path.size() + 1, path + '/') == 0;
           });
}

Statement readStatement(std::string_view text) {
    JsonDocument document;
    if (const char* const problem = parseStrictly(text, document)) {
        refuseBundle("its payload: " + std::string(problem));
    }
    if (!isString(document, "_type", kStatementType)) {
        refuseBundle("its payload is not of type " + std::string(kStatementType));
    }
    if (!isString(document, "predicateType", kPredicateType)) {
        refuseMethod("its predicate is not of type " + std::string(kPredicateType));
    }
    const JsonValue* const predicate = findObject(document, "predicate");
    const JsonValue* const resources =
        predicate == nullptr ? nullptr : findArray(*predicate, "resources");
    if (resources == nullptr) {
        refuseBundle("its statement lists no resources");
    }
    std::vector<std::string> ignoredPaths = readIgnoredPaths(requireFilesBySha256(*predicate));
    const Sha256Digest expected = readSubject(document);
    ResourceList listing;
    for (const JsonValue& resource : resources->GetArray()) {
        listing.add(resource);
    }
    if (listing.digestOfAll() != expected) {
        refuseBundle("the digest of its subject is not that of its resources");
    }
    return {listing.takeFiles(), std::move(ignoredPaths)};
}

}  // namespace VelmoraQuavin::internal
