#include <windows.h>
// After windows.h, which it needs.
#include <bcrypt.h>

#include <stdexcept>
#include <string>

#include "support/crypto.h"

namespace VelmoraQuavin::testing {
namespace {

void require(NTSTATUS status, const char* what) {
    if (!BCRYPT_SUCCESS(status)) {
        throw std::runtime_error(std::string("the system's cryptography refused: ") + what);
    }
}

}  // namespace

std::vector<unsigned char> runAes(AesMode mode, AesDirection direction, const unsigned char* key,
                                  const unsigned char* vector, const unsigned char* input,
                                  std::size_t count) {
    BCRYPT_ALG_HANDLE provider = nullptr;
    BCRYPT_KEY_HANDLE handle = nullptr;
    require(::BCryptOpenAlgorithmProvider(&provider, BCRYPT_AES_ALGORITHM, nullptr, 0), "open");
    std::wstring chaining = mode == AesMode::kCbc ? BCRYPT_CHAIN_MODE_CBC : BCRYPT_CHAIN_MODE_ECB;
    require(::BCryptSetProperty(provider, BCRYPT_CHAINING_MODE,
                                reinterpret_cast<PUCHAR>(chaining.data()),
                                static_cast<ULONG>((chaining.size() + 1) * sizeof(wchar_t)), 0),
            "mode");
    require(::BCryptGenerateSymmetricKey(provider, &handle, nullptr, 0,
                                         const_cast<unsigned char*>(key), 16, 0),
            "key");
    std::vector<unsigned char> chain;
    if (vector != nullptr) {
        chain.assign(vector, vector + 16);
    }
    std::vector<unsigned char> output(count);
    ULONG written = 0;
    const auto run = direction == AesDirection::kEncrypt ? ::BCryptEncrypt : ::BCryptDecrypt;
    const NTSTATUS status =
        run(handle, const_cast<unsigned char*>(input), static_cast<ULONG>(count), nullptr,
            chain.empty() ? nullptr : chain.data(), static_cast<ULONG>(chain.size()), output.data(),
            static_cast<ULONG>(count), &written, 0);
    ::BCryptDestroyKey(handle);
    ::BCryptCloseAlgorithmProvider(provider, 0);
    require(status, "run");
    return output;
}

std::array<unsigned char, 32> sha256(std::string_view content) {
    BCRYPT_ALG_HANDLE provider = nullptr;
    BCRYPT_HASH_HANDLE hash = nullptr;
    std::array<unsigned char, 32> digest{};
    require(::BCryptOpenAlgorithmProvider(&provider, BCRYPT_SHA256_ALGORITHM, nullptr, 0), "open");
    require(::BCryptCreateHash(provider, &hash, nullptr, 0, nullptr, 0, 0), "hash");
    std::string bytes(content);
    require(::BCryptHashData(hash, reinterpret_cast<PUCHAR>(bytes.data()),
                             static_cast<ULONG>(bytes.size()), 0),
            "data");
    require(::BCryptFinishHash(hash, digest.data(), static_cast<ULONG>(digest.size()), 0),
            "finish");
    ::BCryptDestroyHash(hash);
    ::BCryptCloseAlgorithmProvider(provider, 0);
    return digest;
}

}  // namespace VelmoraQuavin::testing
