#pragma once

#include <windows.h>
// Behind windows.h, which it needs.
#include <bcrypt.h>

#include <cstddef>

namespace VelmoraQuavin::internal::platform {

/// An AES key of the system's cryptography. Cipher-block chaining is its provider's default mode.
///
/// One call's alone: a key object that is used again goes on where the last call has ended.
class AesKey {
public:
    /// @param key sixteen bytes.
    explicit AesKey(const unsigned char* key) noexcept;
    AesKey(const AesKey&) = delete;
    AesKey& operator=(const AesKey&) = delete;
    /// Wipes and releases everything.
    ~AesKey();

    /// Whether there is a key.
    explicit operator bool() const { return key_ != nullptr; }
    BCRYPT_KEY_HANDLE get() const { return key_; }

private:
    BCRYPT_ALG_HANDLE provider_ = nullptr;
    unsigned char* object_ = nullptr;
    ULONG objectSize_ = 0;
    BCRYPT_KEY_HANDLE key_ = nullptr;
};

}  // namespace VelmoraQuavin::internal::platform
