#pragma once

#include <cstddef>
#include <cstring>
#include <memory>

#include "platform/ecdsa.h"
#include "platform/secure_memory.h"
#include "platform/windows/cng_handles.h"

namespace VelmoraQuavin::internal::platform {

struct CngKeyDestroy {
    void operator()(void* key) const noexcept { ::BCryptDestroyKey(key); }
};
/// A key of the system's cryptography; its provider must outlast it.
using CngKey = std::unique_ptr<void, CngKeyDestroy>;

/// @return null on failure.
inline CngProvider openEcdsaProvider(EcCurve curve) noexcept {
    return openCngProvider(curve == EcCurve::kP256 ? BCRYPT_ECDSA_P256_ALGORITHM
                                                   : BCRYPT_ECDSA_P384_ALGORITHM);
}

/// Imports a key.
/// @param coordinates x and y.
/// @param secret of coordinateSize() bytes; null for a public key.
/// @return null if the system refuses it.
inline CngKey importEcKey(const CngProvider& provider, EcCurve curve, const void* coordinates,
                          const void* secret = nullptr) noexcept {
    struct {
        BCRYPT_ECCKEY_BLOB header;
        unsigned char numbers[3 * coordinateSize(EcCurve::kP384)];
    } blob{};
    const std::size_t size = coordinateSize(curve);
    const bool isP256 = curve == EcCurve::kP256;
    blob.header.cbKey = static_cast<ULONG>(size);
    std::memcpy(blob.numbers, coordinates, 2 * size);
    std::size_t count = sizeof blob.header + 2 * size;
    if (secret == nullptr) {
        blob.header.dwMagic =
            isP256 ? BCRYPT_ECDSA_PUBLIC_P256_MAGIC : BCRYPT_ECDSA_PUBLIC_P384_MAGIC;
    } else {
        blob.header.dwMagic =
            isP256 ? BCRYPT_ECDSA_PRIVATE_P256_MAGIC : BCRYPT_ECDSA_PRIVATE_P384_MAGIC;
        std::memcpy(blob.numbers + 2 * size, secret, size);
        count += size;
    }
    BCRYPT_KEY_HANDLE handle = nullptr;
    const NTSTATUS status = ::BCryptImportKeyPair(
        provider.get(), nullptr, secret == nullptr ? BCRYPT_ECCPUBLIC_BLOB : BCRYPT_ECCPRIVATE_BLOB,
        &handle, reinterpret_cast<PUCHAR>(&blob), static_cast<ULONG>(count), 0);
    wipeMemory(&blob, sizeof blob);
    return CngKey(BCRYPT_SUCCESS(status) ? handle : nullptr);
}

}  // namespace VelmoraQuavin::internal::platform
