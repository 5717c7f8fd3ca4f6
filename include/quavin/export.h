#pragma once

/// @file
/// The macro that marks everything the library exports; the only header besides c.h that C can
/// include.

/// @def QUAVIN_API
/// Marks a class, function or constant that hosts may link against; every other symbol is hidden.

#if defined(_WIN32)
#if defined(QUAVIN_BUILDING_LIBRARY)
#define QUAVIN_API __declspec(dllexport)
#else
#define QUAVIN_API __declspec(dllimport)
#endif
#else
#define QUAVIN_API __attribute__((visibility("default")))
#endif

#if defined(__cplusplus)
/// @def QUAVIN_STATUS_API
/// QUAVIN_API for QuavinStatus. If QUAVIN_NODISCARD_STATUS is defined before a header of the
/// library is included, the compiler warns about every status that is dropped.
#if !defined(QUAVIN_NODISCARD_STATUS)
#define QUAVIN_STATUS_API QUAVIN_API
#elif defined(_MSC_VER)
#define QUAVIN_STATUS_API [[nodiscard]] QUAVIN_API
#elif !defined(_WIN32)
#define QUAVIN_STATUS_API [[nodiscard, gnu::visibility("default")]]
#elif defined(QUAVIN_BUILDING_LIBRARY)
#define QUAVIN_STATUS_API [[nodiscard, gnu::dllexport]]
#else
#define QUAVIN_STATUS_API [[nodiscard, gnu::dllimport]]
#endif
#endif  // defined(__cplusplus)
