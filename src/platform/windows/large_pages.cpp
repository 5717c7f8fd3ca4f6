#include "platform/large_pages.h"

namespace VelmoraQuavin::internal::platform {

// Large pages require a privilege that ordinary processes lack on Windows.
void preferLargePages(void* /*memory*/, std::size_t /*size*/) noexcept {}

}  // namespace VelmoraQuavin::internal::platform
