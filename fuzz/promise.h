#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace quavin_fuzz {

/// Reports a find: ends the program, whatever handles exceptions, if a promise was broken.
inline void require(bool kept, const char* promise) {
    if (!kept) {
        static_cast<void>(std::fprintf(stderr, "Broken promise: %s\n", promise));
        std::abort();
    }
}

/// The input as text. Never null, so that it can pass for an empty file in memory.
inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return size == 0 ? std::string_view("")
                     : std::string_view(reinterpret_cast<const char*>(data), size);
}

}  // namespace quavin_fuzz
