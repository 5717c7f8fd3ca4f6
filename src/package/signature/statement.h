#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/message_digest.h"

namespace VelmoraQuavin::internal {

constexpr std::string_view kStatementType = "https://in-toto.io/Statement/v1";
constexpr std::string_view kPredicateType = "https://model_signing/signature/v1.0";
constexpr std::string_view kSha256 = "sha256";

/// The digests of the files that a signature covers, by name. Names are relative to the package,
/// with "/" between their parts.
using SignedFiles = std::map<std::string, platform::Sha256Digest>;

/// The digest of digests, which stands for a whole model; nothing if the system's cryptography
/// fails.
std::optional<platform::Sha256Digest> digestOfDigests(
    const std::vector<platform::Sha256Digest>& digests);

/// Two files whose names differ only in the case of ASCII letters, if there are any.
std::optional<std::pair<std::string, std::string>> findTwins(const SignedFiles& files);

/// What is signed about a model.
struct Statement {
    SignedFiles files;
    /// Files and folders that were left out, by the same kind of name.
    std::vector<std::string> ignoredPaths;

    /// Whether a file is none of those that are listed, and one that was left out.
    bool leavesOut(const std::string& name) const;
};

/// Whether a name may stand in a statement: a relative path that every system reads alike. No file
/// has two such names.
bool isPlainName(std::string_view name);

/// Reads the statement about a model, whose signature has been verified. Members that the format
/// does not have are ignored, as it demands.
/// @throws SignatureException for anything but a statement about files and their SHA-256, or for
///         names that not every system reads alike.
Statement readStatement(std::string_view text);

}  // namespace VelmoraQuavin::internal
