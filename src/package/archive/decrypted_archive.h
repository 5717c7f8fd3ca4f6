#pragma once

#include <memory>
#include <optional>

#include "core/secure_wipe.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// A secured archive, decrypted into memory of its own that is wiped when this is destroyed.
class DecryptedArchive {
public:
    /// @param data,length a vector and ciphertext; not needed afterwards.
    /// @param key sixteen bytes.
    /// @throws InvalidArgumentsException for a null pointer, or a length that no secured archive
    ///         has; FileException if the cryptography fails; Exception TAR_CHECKSUM_MISMATCH if
    ///         what comes out would pass for an empty archive. No other wrong key is detected.
    DecryptedArchive(const unsigned char* data, uint64 length, const unsigned char* key);

    const unsigned char* data() const { return bytes_.get(); }
    uint64 size() const { return size_; }

private:
    uint64 size_;
    std::unique_ptr<unsigned char[]> bytes_;
    std::optional<WipeOnExit> wipe_;  // destroyed before the bytes
};

}  // namespace VelmoraQuavin::internal
