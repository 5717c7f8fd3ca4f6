#pragma once

#include <cstddef>
#include <string_view>

#include "package/manifest/json_access.h"

namespace VelmoraQuavin::internal {

/// The largest manifest in bytes. That of a network with a hundred inputs has some 20 KiB.
constexpr uint64 kLargestManifest = uint64{1} << 20;
/// The most values that a manifest may hold, lists and objects included. Each costs several hundred
/// bytes where it stands for an input or is worth a warning.
constexpr uint64 kMostManifestValues = uint64{1} << 16;

/// Why a text is no manifest.
enum class ManifestFault {
    kNone,
    kTooLarge,
    kTooManyValues,
    kEmpty,
    kNoJson,
    kZeroByte,
    kNoObject
};

struct ManifestParse {
    ManifestFault fault = ManifestFault::kNone;
    std::size_t offset = 0;  ///< Where in the text, for kNoJson and kZeroByte.
};

/// Parses a manifest; the limits are checked before anything is built.
/// @param document receives one JSON object, or the parser's error for kNoJson.
ManifestParse parseManifest(std::string_view text, JsonDocument& document);

/// Bytes of the mark that editors put in front of a text; 0 without one.
std::size_t byteOrderMarkSize(std::string_view text);

}  // namespace VelmoraQuavin::internal
