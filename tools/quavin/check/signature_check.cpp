#include "tools/quavin/check/signature_check.h"

#include <optional>
#include <string_view>

#include "package/signature/verify_signature.h"
#include "tools/quavin/package/package_digests.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::SignatureException;
using VelmoraQuavin::internal::kSignatureName;
using VelmoraQuavin::internal::verifyStatement;

constexpr const char* kAdvice =
    "Do not use it: get it again from whoever signed it, and ask why it differs.";
constexpr const char* kSignatureAdvice =
    "Check that --public-key names the key of whoever made the package, and get it again from "
    "them.";
constexpr const char* kUnsigned = "It was not signed";
constexpr const char* kSignAgain =
    "Keep all of the package's files in the package, and have it signed again.";

std::string fileTitle(const std::string& name) {
    return "file \"" + name + "\"";
}

void compare(const SignedFiles& expected, const SignedFiles& found, Findings& findings) {
    for (const auto& [name, digest] : expected) {
        const auto file = found.find(name);
        if (file == found.end()) {
            findings.error(fileTitle(name), "It was signed, but is missing", kAdvice);
        } else if (file->second != digest) {
            findings.error(fileTitle(name), "It is not what was signed", kAdvice);
        }
    }
    for (const auto& [name, digest] : found) {
        if (expected.count(name) == 0) {
            findings.error(fileTitle(name), kUnsigned,
                           "Remove it, or have the package signed again.");
        }
    }
    // Otherwise it is among those.
    if (expected.count(kManifestName) == 0 && found.count(kManifestName) == 0) {
        findings.error(fileTitle(kManifestName), kUnsigned, kSignAgain);
    }
}

// Components may lie outside the package.
void requireComponents(const OpenedPackage& package, const SignedFiles& files, Findings& findings) {
    VelmoraQuavin::ModelMetadata metadata;
    if (!package.readManifest(metadata).ok()) {
        return;  // reported by what follows
    }
    for (const std::string& missing : componentsMissingIn(files, metadata)) {
        findings.error("component \"" + missing + "\"", kUnsigned, kSignAgain);
    }
}

}  // namespace

std::string checkSignature(const OpenedPackage& package, const std::vector<NamedKey>& keys,
                           Findings& findings) {
    const std::string problem = package.problem();
    if (!problem.empty()) {
        findings.error("package", problem,
                       "Pass the directory that contains manifest.json, or an archive of it.");
        return "";
    }
    try {
        const std::optional<WipedBytes> signature = package.signature();
        if (!signature.has_value()) {
            findings.error(kSignatureName, "The package has no signature",
                           "Have it signed: quavin sign.");
            return "";
        }
        std::vector<TrustedKey> all;
        all.reserve(keys.size());
        for (const NamedKey& key : keys) {
            all.push_back(key.key);
        }
        const auto [statement, signer] = verifyStatement(signature->text(), all);
        compare(statement.files, package.digests(statement), findings);
        requireComponents(package, statement.files, findings);
        return findings.hasErrors() ? "" : keys[signer].name;
    } catch (const SignatureException& refused) {
        findings.error(kSignatureName, refused.what(), kSignatureAdvice);
    } catch (const VelmoraQuavin::Exception& unreadable) {
        findings.error("package", unreadable.what(),
                       "A signed package holds nothing but readable, regular files.");
    }
    return "";
}

}  // namespace quavin_tool
