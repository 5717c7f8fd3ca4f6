#pragma once

#include <windows.h>
// Needs windows.h first.
#include <bcrypt.h>

#include <memory>
#include <type_traits>

namespace VelmoraQuavin::internal::platform {

struct CngProviderClose {
    void operator()(void* provider) const noexcept { ::BCryptCloseAlgorithmProvider(provider, 0); }
};
/// An algorithm of the system's cryptography.
using CngProvider = std::unique_ptr<void, CngProviderClose>;
static_assert(std::is_same_v<BCRYPT_ALG_HANDLE, void*>);

/// @return null on failure.
inline CngProvider openCngProvider(const wchar_t* algorithm) noexcept {
    BCRYPT_ALG_HANDLE provider = nullptr;
    const NTSTATUS status = ::BCryptOpenAlgorithmProvider(&provider, algorithm, nullptr, 0);
    return CngProvider(BCRYPT_SUCCESS(status) ? provider : nullptr);
}

}  // namespace VelmoraQuavin::internal::platform
