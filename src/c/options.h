#pragma once

#include <cstdint>

#include "quavin/c.h"
#include "quavin/engine_options.h"
#include "quavin/package_memory.h"

namespace VelmoraQuavin::internal {

/// What a caller chose for a load.
struct LoadSettings {
    EngineOptions engine;
    PackageKeys keys;
    bool hasKeys = false;
    bool registered = false;
};

/// Where a package is, as far as its keys are concerned.
enum class PackageForm { kArchive, kFiles };

/// @throws InvalidArgumentsException, naming the type, for a reserved member that is set.
void requireReservedZero(std::int32_t reserved, const char* type);

/// @param given null for the defaults.
/// @throws InvalidArgumentsException for an unusable struct.
EngineOptions engineOptionsOf(const quavin_engine_options* given);
/// @param given null for no keys.
/// @throws InvalidArgumentsException for an unusable struct, a component key without a
///         path or a key, or an archive key without an archive.
PackageKeys packageKeysOf(const quavin_keys* given, PackageForm form);
/// @param given null for the defaults, which include the engine options of the configuration.
/// @throws InvalidArgumentsException as the other two do.
LoadSettings loadSettingsOf(const quavin_load_options* given, PackageForm form);

}  // namespace VelmoraQuavin::internal
