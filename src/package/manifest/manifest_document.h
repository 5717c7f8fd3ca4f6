#pragma once

#include <cstddef>
#include <string_view>

#include "package/json/json_access.h"

namespace VelmoraQuavin::internal {

/// The largest manifest accepted, in bytes. A network with a hundred inputs needs about 20 KiB.
constexpr uint64 kLargestManifest = uint64{1} << 20;
/// The largest number of values in a manifest, lists and objects included. A value that describes
/// an input or causes a warning takes several hundred bytes of memory.
constexpr uint64 kMostManifestValues = uint64{1} << 16;

/// Why a text is not a manifest.
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
    std::size_t offset = 0;  ///< Position in the text, for kNoJson and kZeroByte.
};

/// Parses a manifest; the limits are checked before anything is built.
/// @param document receives one JSON object, or the parser's error for kNoJson.
ManifestParse parseManifest(std::string_view text, JsonDocument& document);

}  // namespace VelmoraQuavin::internal
