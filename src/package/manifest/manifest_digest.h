#pragma once

#include <optional>
#include <string>

#include "platform/message_digest.h"

namespace VelmoraQuavin::internal {

/// What a package's signature is compared with, once a manifest has been parsed.
struct ManifestDigest {
    std::string name;  ///< The manifest's name beside its signature, as packagePath() gives it.
    /// Of the bytes that were parsed; nothing if the system's cryptography failed.
    std::optional<platform::Sha256Digest> digest;
};

}  // namespace VelmoraQuavin::internal
