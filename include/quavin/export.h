#pragma once

/// @file
/// The mark on everything that the library exports.

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
