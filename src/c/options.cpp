#include "c/options.h"

#include <string>

#include "c/guard.h"
#include "c/sized_struct.h"

namespace VelmoraQuavin::internal {
namespace {

static_assert(QUAVIN_PRECISION_SINGLE == static_cast<int>(EngineOptions::Precision::Single));
static_assert(QUAVIN_PRECISION_FASTEST == static_cast<int>(EngineOptions::Precision::Fastest));
static_assert(QUAVIN_HINT_LATENCY == static_cast<int>(EngineOptions::Hint::Latency));
static_assert(QUAVIN_HINT_THROUGHPUT == static_cast<int>(EngineOptions::Hint::Throughput));

}  // namespace

void requireReservedZero(std::int32_t reserved, const char* type) {
    if (reserved != 0) {
        throw InvalidArgumentsException(std::string(type) + ": \"reserved\" is not zero");
    }
}

EngineOptions engineOptionsOf(const quavin_engine_options* given) {
    const quavin_engine_options plain = readStruct(given, "quavin_engine_options");
    EngineOptions options;
    // Numbers without a meaning pass through: the library refuses them.
    options.precision = static_cast<EngineOptions::Precision>(plain.precision);
    options.threads = plain.threads;
    options.hint = static_cast<EngineOptions::Hint>(plain.hint);
    options.mapWeights = plain.map_weights != 0;
    options.cacheDirectory = String(plain.cache_directory);
    options.cacheSizeLimit = plain.cache_size_limit;
    return options;
}

PackageKeys packageKeysOf(const quavin_keys* given, PackageForm form) {
    const quavin_keys plain = readStruct(given, "quavin_keys");
    PackageKeys keys;
    if (plain.archive_key != nullptr) {
        if (form != PackageForm::kArchive) {
            throw InvalidArgumentsException("quavin_keys: only an archive has an archive key");
        }
        keys.setArchiveKey(plain.archive_key);
    }
    if (plain.component_key != nullptr) {
        keys.setComponentKey(plain.component_key);
    }
    if (plain.component_key_count != 0) {
        requireGiven(plain.component_keys, "component_keys");
    }
    for (std::size_t i = 0; i < plain.component_key_count; ++i) {
        const quavin_component_key& component = plain.component_keys[i];
        requireGiven(component.path, "path");
        keys.setComponentKey(component.path, component.key);
    }
    return keys;
}

LoadSettings loadSettingsOf(const quavin_load_options* given, PackageForm form) {
    const quavin_load_options plain = readStruct(given, "quavin_load_options");
    requireReservedZero(plain.reserved, "quavin_load_options");
    LoadSettings settings;
    settings.engine =
        plain.engine == nullptr ? QuavinClient::getEngineOptions() : engineOptionsOf(plain.engine);
    settings.keys = packageKeysOf(plain.keys, form);
    settings.hasKeys = plain.keys != nullptr;
    settings.registered = plain.registered != 0;
    return settings;
}

}  // namespace VelmoraQuavin::internal
