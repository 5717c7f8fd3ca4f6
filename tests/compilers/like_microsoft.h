// Included before a source, makes MinGW's headers like those of Microsoft's SDK where they differ
// in ways that a MinGW build cannot show.
#pragma once

// MinGW's C++ headers define it themselves.
#ifdef NOMINMAX
#define QUAVIN_HAS_NO_MIN_MAX
#endif

#include <algorithm>
#include <limits>
#include <string>
// After the C++ headers, because they undefine its macros.
#include <windows.h>
#include <winternl.h>

#ifndef QUAVIN_HAS_NO_MIN_MAX
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define min(a, b) (((a) < (b)) ? (a) : (b))
#endif

// Only in the driver kit's headers.
#pragma GCC poison NtQueryInformationFile NtSetInformationFile NtReadFile NtWriteFile
