#pragma once

#include <windows.h>
// Needs windows.h first.
#include <bcrypt.h>

#include <cstddef>

namespace VelmoraQuavin::internal::platform {

/// An AES key of the system's cryptography. The provider's default mode is CBC.
///
/// For a single call only: a reused key object continues where the last call ended.
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
