#include "platform/large_pages.h"

namespace VelmoraQuavin::internal::platform {

// Large pages need a privilege here that ordinary processes do not have.
void preferLargePages(void* /*memory*/, std::size_t /*size*/) noexcept {}

}  // namespace VelmoraQuavin::internal::platform
