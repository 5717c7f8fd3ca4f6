#include "platform/large_pages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace VelmoraQuavin::internal::platform {
namespace {

constexpr std::size_t kSmallestWorthwhile = std::size_t{4} << 20;

}  // namespace

void preferLargePages(void* memory, std::size_t size) noexcept {
#if defined(MADV_HUGEPAGE)
    if (size < kSmallestWorthwhile) {
        return;
    }
    // Only whole pages inside the block: the rest belongs to the allocator.
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t intoPage = reinterpret_cast<std::uintptr_t>(memory) % page;
    const std::size_t skipped = intoPage == 0 ? 0 : page - intoPage;
    const std::size_t whole = (size - skipped) / page * page;
    // Only advice: a system that does not take it reports an error, which is harmless.
    static_cast<void>(::madvise(static_cast<char*>(memory) + skipped, whole, MADV_HUGEPAGE));
#else
    static_cast<void>(memory);
    static_cast<void>(size);
#endif
}

}  // namespace VelmoraQuavin::internal::platform
