#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "package/archive/tar_entry_path.h"
#include "package/archive/tar_header.h"
#include "package/archive/tar_pax_records.h"
#include "quavin/status.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// A file or directory in an archive. Its content points into the archive's memory.
struct TarEntry {
    enum class Kind { kFile, kDirectory };

    Kind kind = Kind::kFile;
    std::string name;  ///< As stored in the archive, with "/" between a prefix and the name.
    const unsigned char* content = nullptr;
    uint64 size = 0;
};

/// Reads an untrusted archive entry by entry, and never past its length.
///
/// Supports ustar, and the long names and sizes of GNU tar and pax. Copies only names.
class TarReader {
public:
    /// @param data `length` bytes, which must outlive the reader and its entries.
    TarReader(const unsigned char* data, uint64 length) : data_(data), length_(length) {}

    /// Advances to the next file or directory.
    /// @return false at the end of the archive, with `entry` untouched.
    /// @throws Exception TAR_CHECKSUM_MISMATCH; TAR_UNSUPPORTED_ENTRY for anything but a plain file
    ///         or directory; INVALID_ARGUMENTS for a truncated or malformed archive. The text names
    ///         the entry.
    bool next(TarEntry& entry);

private:
    // What extension headers say about the entry that follows them.
    struct Extensions {
        std::optional<std::string> longName;
        PaxRecords pax;
        bool any = false;
    };

    std::optional<TarHeader> readHeader();
    void readExtension(const TarHeader& header, Extensions& extensions);
    void readGlobalRecords(std::string_view records) const;
    void readEntry(const TarHeader& header, const Extensions& extensions, TarEntry& entry);
    // Returns the content at the current position and moves past it.
    std::string_view takeContent(uint64 size, const std::string& name);
    // As above, for a header that extends the entry after it.
    std::string_view takeExtension(const TarHeader& header);
    [[noreturn]] void fail(STATUS_CODE code, const std::string& name,
                           const std::string& what) const;

    const unsigned char* data_;
    uint64 length_;
    uint64 position_ = 0;
    uint64 count_ = 0;
};

/// Where an entry goes.
/// @throws InvalidArgumentsException, naming the entry, if it must not be extracted.
TarEntryPath requireTarEntryPath(const TarEntry& entry);

/// Whether bytes begin like the end of an archive, but without the whole block of zeros that a real
/// one has there. One in 256 encrypted archives looks like this, and so does one in 256 archives
/// decrypted with a wrong key.
bool isFalseTarEnd(const unsigned char* data, uint64 length);

/// Whether a header's checksum is right, however many digits it is written with.
bool tarChecksumMatches(const TarHeader& header);

/// A name from an archive for use in messages: quoted, without control characters, and cut if it is
/// too long.
std::string quotedTarName(std::string_view name);

}  // namespace VelmoraQuavin::internal
