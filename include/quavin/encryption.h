#pragma once

/// @file
/// Keys of secured components, and their decryption.

#include <array>
#include <cstdint>

#include "quavin/export.h"
#include "quavin/status.h"

namespace VelmoraQuavin {

/// How the producer of a secured component padded its last block. For information only: decryption
/// never removes padding.
enum class PaddingType : std::uint32_t {
    NONE = 0,   ///< Not specified.
    PKCS7 = 1,  ///< PKCS#7.
};

/// The AES-128 key of a component and its padding.
///
/// A value type that owns a copy of the key and overwrites it when it is destroyed or replaced.
/// Never streamed, compared or logged.
class QUAVIN_API Encryption {
public:
    /// A key of sixteen zero bytes and PaddingType::NONE.
    Encryption();
    /// Copies both; `key` is overwritten with zeros.
    Encryption(std::array<unsigned char, 16>&& key, PaddingType padding);
    Encryption(const Encryption& other) = default;             ///< Copies key and padding.
    Encryption& operator=(const Encryption& other) = default;  ///< Copies key and padding.
    /// Overwrites the key.
    ~Encryption();

    /// The sixteen bytes of the key; valid while the object lives.
    const unsigned char* getKey() const { return key_.data(); }
    /// Copies sixteen bytes.
    /// @throws InvalidArgumentsException for a null pointer.
    void setKey(const unsigned char* key);
    /// The padding.
    PaddingType getPaddingType() const { return paddingType_; }
    /// Replaces the padding.
    void setPaddingType(PaddingType padding) { paddingType_ = padding; }

private:
    std::array<unsigned char, 16> key_;
    PaddingType paddingType_;
};

/// Decrypts secured components in memory. Stateless; calls may run on several threads at once.
class QUAVIN_API QuavinEncryption {
public:
    QuavinEncryption() = default;
    QuavinEncryption(const QuavinEncryption&) = default;             ///< Has no state to copy.
    QuavinEncryption& operator=(const QuavinEncryption&) = default;  ///< Has no state to copy.
    virtual ~QuavinEncryption();

    /// Decrypts AES-128-CBC ciphertext that is preceded by its 16-byte initialisation vector.
    ///
    /// Padding is not removed: the plaintext has exactly `length` - 16 bytes. A wrong key is not
    /// detected; it yields meaningless bytes. Never throws.
    ///
    /// @param input the initialisation vector, then the ciphertext.
    /// @param length bytes at `input`: a multiple of 16, and at least 16.
    /// @param output receives `length` - 16 bytes; allocated by the caller. May be `input` itself,
    ///        or overlap it in any other way. May be null if `length` is 16.
    /// @param key sixteen bytes.
    /// @return SUCCESS; otherwise FAILURE with an empty description. If an argument is unusable,
    ///         nothing is written; if the cryptography itself fails, what was written is wiped.
    virtual QuavinStatus AES_decrypt(const unsigned char* input, unsigned int length,
                                     unsigned char*& output, const unsigned char* key);
};

}  // namespace VelmoraQuavin
