// Included in front of a source, makes MinGW's headers like those of Microsoft's SDK where they
// differ and a build by MinGW cannot show it.
#pragma once

// MinGW's C++ headers define it themselves.
#ifdef NOMINMAX
#define QUAVIN_HAS_NO_MIN_MAX
#endif

#include <algorithm>
#include <limits>
#include <string>
// Behind them, since they take its macros out.
#include <windows.h>
#include <winternl.h>

#ifndef QUAVIN_HAS_NO_MIN_MAX
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define min(a, b) (((a) < (b)) ? (a) : (b))
#endif

// In the headers of the driver kit alone.
#pragma GCC poison NtQueryInformationFile NtSetInformationFile NtReadFile NtWriteFile
