// The crypto library lets a program replace its allocator.

#include <openssl/crypto.h>
#include <openssl/err.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>

#include "unit/platform/aes_memory.h"

namespace VelmoraQuavin::testing {
namespace {

// Allocations that still succeed; negative while none is to fail.
std::atomic<int> allocationsLeft{-1};

bool mayAllocate() {
    const int left = allocationsLeft.load();
    if (left > 0) {
        allocationsLeft = left - 1;
    }
    return left != 0;
}

void* allocate(std::size_t count, const char* /*file*/, int /*line*/) {
    return mayAllocate() ? std::malloc(count) : nullptr;
}
void* reallocate(void* memory, std::size_t count, const char* /*file*/, int /*line*/) {
    return mayAllocate() ? std::realloc(memory, count) : nullptr;
}
void release(void* memory, const char* /*file*/, int /*line*/) {
    std::free(memory);
}

// OpenSSL accepts an allocator only before its first allocation.
const bool kInstalled = CRYPTO_set_mem_functions(allocate, reallocate, release) == 1;

}  // namespace

const int kLeastAesAllocations = 2;  // the context, and the key in it

bool canFailAesAllocations() {
    return kInstalled;
}

void grantAesAllocations(int count) {
    allocationsLeft = count;
}

void grantAllAesAllocations() {
    allocationsLeft = -1;
}

bool hostSeesNoAesError() {
    return ERR_peek_error() == 0;
}

}  // namespace VelmoraQuavin::testing
