// The functions of the system's cryptography and of its heap, as this program's objects call them.
// Each goes on to the system's own.

#include "unit/platform/faulty_cng_windows.h"

#include <windows.h>
// Behind windows.h, which it needs.
#include <bcrypt.h>

#include <algorithm>
#include <cstring>

namespace VelmoraQuavin::testing {
namespace {

constexpr NTSTATUS kUnsuccessful = static_cast<NTSTATUS>(0xC0000001);

FaultyCng* activeFault = nullptr;

// Looked up at every call: those of the heap come before anything here is initialised.
template <typename Function>
Function* systems(const wchar_t* library, const char* name) {
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(library), name)));
}

template <typename Function>
Function* cryptographys(const char* name) {
    ::LoadLibraryW(L"bcrypt.dll");  // nothing else in this program may need it
    return systems<Function>(L"bcrypt.dll", name);
}

bool fails(CngStep step) {
    return activeFault != nullptr && activeFault->fails(step);
}

void* WINAPI allocate(HANDLE heap, DWORD flags, SIZE_T size) {
    if (fails(CngStep::kObjectMemory)) {
        return nullptr;
    }
    void* const block =
        systems<decltype(::HeapAlloc)>(L"kernel32.dll", "HeapAlloc")(heap, flags, size);
    if (activeFault != nullptr && block != nullptr) {
        std::memset(block, 0xA5, size);  // so that it is never wiped by chance
        activeFault->isAllocated(block, size);
    }
    return block;
}

BOOL WINAPI release(HANDLE heap, DWORD flags, void* block) {
    if (activeFault != nullptr) {
        activeFault->isFreed(block);
    }
    return systems<decltype(::HeapFree)>(L"kernel32.dll", "HeapFree")(heap, flags, block);
}

}  // namespace

FaultyCng::FaultyCng(CngStep failing) : failing_(failing) {
    activeFault = this;
}

FaultyCng::~FaultyCng() {
    activeFault = nullptr;
}

bool FaultyCng::fails(CngStep step) {
    failures_ += step == failing_ ? 1 : 0;
    return step == failing_;
}

void FaultyCng::isClosed(const void* provider) {
    released_.emplace_back(provider == provider_ ? "provider" : "unknown provider");
}

void FaultyCng::isAllocated(const void* object, std::size_t size) {
    object_ = object;
    objectSize_ = size;
}

void FaultyCng::isFreed(const void* object) {
    if (object != nullptr && object == object_) {
        const auto* const bytes = static_cast<const unsigned char*>(object);
        const bool wiped =
            std::all_of(bytes, bytes + objectSize_, [](unsigned char byte) { return byte == 0; });
        released_.emplace_back(wiped ? "wiped object" : "object");
        object_ = nullptr;
    }
}

void FaultyCng::isDestroyed(const void* key) {
    released_.emplace_back(key == key_ ? "key" : "unknown key");
}

}  // namespace VelmoraQuavin::testing

using VelmoraQuavin::testing::activeFault;
using VelmoraQuavin::testing::CngStep;
using VelmoraQuavin::testing::cryptographys;
using VelmoraQuavin::testing::fails;
using VelmoraQuavin::testing::kUnsuccessful;

extern "C" {

// The heap's are imported through pointers, which stand here in place of the import library's.
extern decltype(&::HeapAlloc) const importedHeapAlloc asm("__imp_HeapAlloc");
extern decltype(&::HeapFree) const importedHeapFree asm("__imp_HeapFree");
decltype(&::HeapAlloc) const importedHeapAlloc = &VelmoraQuavin::testing::allocate;
decltype(&::HeapFree) const importedHeapFree = &VelmoraQuavin::testing::release;

NTSTATUS WINAPI BCryptOpenAlgorithmProvider(BCRYPT_ALG_HANDLE* provider, LPCWSTR algorithm,
                                            LPCWSTR implementation, ULONG flags) {
    if (fails(CngStep::kProvider)) {
        return kUnsuccessful;
    }
    const NTSTATUS status = cryptographys<decltype(BCryptOpenAlgorithmProvider)>(
        "BCryptOpenAlgorithmProvider")(provider, algorithm, implementation, flags);
    if (activeFault != nullptr) {
        activeFault->isOpened(*provider);
    }
    return status;
}

NTSTATUS WINAPI BCryptCloseAlgorithmProvider(BCRYPT_ALG_HANDLE provider, ULONG flags) {
    if (activeFault != nullptr) {
        activeFault->isClosed(provider);
    }
    return cryptographys<decltype(BCryptCloseAlgorithmProvider)>("BCryptCloseAlgorithmProvider")(
        provider, flags);
}

NTSTATUS WINAPI BCryptGetProperty(BCRYPT_HANDLE object, LPCWSTR property, PUCHAR output, ULONG size,
                                  ULONG* written, ULONG flags) {
    if (fails(CngStep::kObjectLength)) {
        return kUnsuccessful;
    }
    return cryptographys<decltype(BCryptGetProperty)>("BCryptGetProperty")(object, property, output,
                                                                           size, written, flags);
}

NTSTATUS WINAPI BCryptGenerateSymmetricKey(BCRYPT_ALG_HANDLE provider, BCRYPT_KEY_HANDLE* key,
                                           PUCHAR object, ULONG objectSize, PUCHAR secret,
                                           ULONG secretSize, ULONG flags) {
    if (fails(CngStep::kKey)) {
        *key = provider;  // nothing to be destroyed
        std::memcpy(object, secret, secretSize);
        return kUnsuccessful;
    }
    const NTSTATUS status = cryptographys<decltype(BCryptGenerateSymmetricKey)>(
        "BCryptGenerateSymmetricKey")(provider, key, object, objectSize, secret, secretSize, flags);
    if (activeFault != nullptr) {
        activeFault->isMade(*key);
    }
    return status;
}

NTSTATUS WINAPI BCryptDestroyKey(BCRYPT_KEY_HANDLE key) {
    if (activeFault != nullptr) {
        activeFault->isDestroyed(key);
    }
    return cryptographys<decltype(BCryptDestroyKey)>("BCryptDestroyKey")(key);
}

// Fails once the plaintext is there, which is the worst that can happen.
NTSTATUS WINAPI BCryptDecrypt(BCRYPT_KEY_HANDLE key, PUCHAR input, ULONG size, void* padding,
                              PUCHAR vector, ULONG vectorSize, PUCHAR output, ULONG outputSize,
                              ULONG* written, ULONG flags) {
    const NTSTATUS status = cryptographys<decltype(BCryptDecrypt)>("BCryptDecrypt")(
        key, input, size, padding, vector, vectorSize, output, outputSize, written, flags);
    return fails(CngStep::kDecryption) ? kUnsuccessful : status;
}

}  // extern "C"
