#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "package/archive/tar_header.h"
#include "package/archive/tar_pax_records.h"
#include "quavin/status.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// A file or a directory of an archive. Its content lies in the archive's memory.
struct TarEntry {
    enum class Kind { kFile, kDirectory };

    Kind kind = Kind::kFile;
    std::string name;  ///< As the archive has it, "/" between its parts.
    const unsigned char* content = nullptr;
    uint64 size = 0;
};

/// Reads an archive from somewhere else, entry by entry, and nothing behind its length.
///
/// Takes ustar, and the long names and sizes of GNU tar and of pax. Nothing is copied but names.
class TarReader {
public:
    /// @param data `length` bytes that outlive the reader and its entries.
    TarReader(const unsigned char* data, uint64 length) : data_(data), length_(length) {}

    /// Goes to the next file or directory.
    /// @return false at the archive's end; `entry` is not touched then.
    /// @throws Exception TAR_CHECKSUM_MISMATCH; TAR_UNSUPPORTED_ENTRY for what is neither file nor
    ///         directory; INVALID_ARGUMENTS for an archive that is cut off or makes no sense. The
    ///         text names the entry.
    bool next(TarEntry& entry);

private:
    // What extension headers say of the entry behind them.
    struct Extensions {
        std::optional<std::string> longName;
        PaxRecords pax;
        bool any = false;
    };

    std::optional<TarHeader> readHeader();
    void readExtension(const TarHeader& header, Extensions& extensions);
    void readGlobalRecords(std::string_view records) const;
    void readEntry(const TarHeader& header, const Extensions& extensions, TarEntry& entry);
    // The content behind the header at the current position, which moves behind it.
    std::string_view takeContent(uint64 size, const std::string& name);
    // The same for a header that extends the entry behind it.
    std::string_view takeExtension(const TarHeader& header);
    [[noreturn]] void fail(STATUS_CODE code, const std::string& name,
                           const std::string& what) const;

    const unsigned char* data_;
    uint64 length_;
    uint64 position_ = 0;
    uint64 count_ = 0;
};

/// Whether bytes begin like an archive's end, and not with the whole block of zeros that a real one
/// has there. Once in 256 times those of an encrypted archive do, and what a wrong key makes of
/// one.
bool isFalseTarEnd(const unsigned char* data, uint64 length);

/// Whether a header adds up, however many digits its checksum is written with.
bool tarChecksumMatches(const TarHeader& header);

/// A name from an archive as a text for people: quoted, without control characters, not too long.
std::string quotedTarName(std::string_view name);

}  // namespace VelmoraQuavin::internal
