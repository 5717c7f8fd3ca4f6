// Replaces the system's cryptography and heap functions for the objects of this program. Each
// replacement calls the system's own function.

#include "unit/platform/faulty_cng_windows.h"

#include <windows.h>
// After windows.h, which it needs.
#include <bcrypt.h>

#include <algorithm>
#include <cstring>

namespace VelmoraQuavin::testing {
namespace {

constexpr NTSTATUS kUnsuccessful = static_cast<NTSTATUS>(0xC0000001);

FaultyCng* activeFault = nullptr;

// Looked up at every call, because the heap's are called before anything here is initialised.
template <typename Function>
Function* systemFunction(const wchar_t* library, const char* name) {
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(library), name)));
}

template <typename Function>
Function* cngFunction(const char* name) {
    ::LoadLibraryW(L"bcrypt.dll");  // perhaps nothing else in this program needs it
    return systemFunction<Function>(L"bcrypt.dll", name);
}

bool fails(CngStep step) {
    return activeFault != nullptr && activeFault->fails(step);
}

void* WINAPI allocate(HANDLE heap, DWORD flags, SIZE_T size) {
    if (fails(CngStep::kObjectMemory)) {
        return nullptr;
    }
    void* const block =
        systemFunction<decltype(::HeapAlloc)>(L"kernel32.dll", "HeapAlloc")(heap, flags, size);
    if (activeFault != nullptr && block != nullptr) {
        std::memset(block, 0xA5, size);  // so that it is never zero by chance
        activeFault->isAllocated(block, size);
    }
    return block;
}

BOOL WINAPI release(HANDLE heap, DWORD flags, void* block) {
    if (activeFault != nullptr) {
        activeFault->isFreed(block);
    }
    return systemFunction<decltype(::HeapFree)>(L"kernel32.dll", "HeapFree")(heap, flags, block);
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
using VelmoraQuavin::testing::cngFunction;
using VelmoraQuavin::testing::CngStep;
using VelmoraQuavin::testing::fails;
using VelmoraQuavin::testing::kUnsuccessful;

extern "C" {

// The heap functions are imported through pointers; these replace those of the import library.
extern decltype(&::HeapAlloc) const importedHeapAlloc asm("__imp_HeapAlloc");
extern decltype(&::HeapFree) const importedHeapFree asm("__imp_HeapFree");
decltype(&::HeapAlloc) const importedHeapAlloc = &VelmoraQuavin::testing::allocate;
decltype(&::HeapFree) const importedHeapFree = &VelmoraQuavin::testing::release;

NTSTATUS WINAPI BCryptOpenAlgorithmProvider(BCRYPT_ALG_HANDLE* provider, LPCWSTR algorithm,
                                            LPCWSTR implementation, ULONG flags) {
    if (fails(CngStep::kProvider)) {
        return kUnsuccessful;
    }
    const NTSTATUS status = cngFunction<decltype(BCryptOpenAlgorithmProvider)>(
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
    return cngFunction<decltype(BCryptCloseAlgorithmProvider)>("BCryptCloseAlgorithmProvider")(
        provider, flags);
}

NTSTATUS WINAPI BCryptGetProperty(BCRYPT_HANDLE object, LPCWSTR property, PUCHAR output, ULONG size,
                                  ULONG* written, ULONG flags) {
    if (fails(CngStep::kObjectLength)) {
        return kUnsuccessful;
    }
    return cngFunction<decltype(BCryptGetProperty)>("BCryptGetProperty")(object, property, output,
                                                                         size, written, flags);
}

NTSTATUS WINAPI BCryptGenerateSymmetricKey(BCRYPT_ALG_HANDLE provider, BCRYPT_KEY_HANDLE* key,
                                           PUCHAR object, ULONG objectSize, PUCHAR secret,
                                           ULONG secretSize, ULONG flags) {
    if (fails(CngStep::kKey)) {
        *key = provider;  // not a key that may be destroyed
        std::memcpy(object, secret, secretSize);
        return kUnsuccessful;
    }
    const NTSTATUS status = cngFunction<decltype(BCryptGenerateSymmetricKey)>(
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
    return cngFunction<decltype(BCryptDestroyKey)>("BCryptDestroyKey")(key);
}

// Fails after the plaintext has been written, which is the worst case.
NTSTATUS WINAPI BCryptDecrypt(BCRYPT_KEY_HANDLE key, PUCHAR input, ULONG size, void* padding,
                              PUCHAR vector, ULONG vectorSize, PUCHAR output, ULONG outputSize,
                              ULONG* written, ULONG flags) {
    const NTSTATUS status = cngFunction<decltype(BCryptDecrypt)>("BCryptDecrypt")(
        key, input, size, padding, vector, vectorSize, output, outputSize, written, flags);
    return fails(CngStep::kDecryption) ? kUnsuccessful : status;
}

}  // extern "C"
