#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine/cache/cache_name.h"
#include "engine/cache/entry_buffer.h"

namespace VelmoraQuavin::internal {

/// How an entry is protected.
enum class SealKind : std::uint16_t { kChecksum = 1, kSecret = 2 };

/// The first part of a header; least significant bytes first:
///
/// | bytes | |
/// |---|---|
/// | 8 | "QUAVINCN" |
/// | 2 | format, 1 |
/// | 2 | SealKind |
/// | 8 | size of the content |
/// | 16 | EntryName::digest() |
///
/// A header consists of this and the seal, and is followed by the content, which ends the file.
using HeaderStart = std::array<unsigned char, 36>;
/// The second part of a header; what it means depends on the kind.
using SealValue = std::array<unsigned char, 28>;
static_assert(sizeof(HeaderStart) + sizeof(SealValue) == EntryBuffer::kHeaderSize);

/// The only start that the header of such an entry can have.
HeaderStart headerStart(SealKind kind, const EntryName& name, std::uint64_t contentSize) noexcept;

}  // namespace VelmoraQuavin::internal
