#include "c/handle_table.h"

#include <atomic>

namespace VelmoraQuavin::internal {

std::uintptr_t newHandleNumber() noexcept {
    static std::atomic<std::uintptr_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace VelmoraQuavin::internal
