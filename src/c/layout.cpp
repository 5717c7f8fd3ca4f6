// What compiled programs rely on. A change here breaks them: new members go at the end of structs
// that begin with their size, and leave no gaps, which such programs would not have set to zero.

#include <cstddef>

#include "quavin/c.h"

namespace VelmoraQuavin::internal {
namespace {

static_assert(sizeof(void*) == 8 && sizeof(std::size_t) == 8, "the sizes below are for 64 bits");

static_assert(sizeof(quavin_log_record) == 48 && offsetof(quavin_log_record, level) == 40);
static_assert(sizeof(quavin_engine_options) == 40 &&
              offsetof(quavin_engine_options, cache_size_limit) == 32);
static_assert(sizeof(quavin_config) == 56 && offsetof(quavin_config, reserved) == 36 &&
              offsetof(quavin_config, trusted_key_count) == 48);
static_assert(sizeof(quavin_component_key) == 16 && offsetof(quavin_component_key, key) == 8);
static_assert(sizeof(quavin_keys) == 40 && offsetof(quavin_keys, component_key_count) == 32);
static_assert(sizeof(quavin_load_options) == 32 && offsetof(quavin_load_options, reserved) == 28);
static_assert(sizeof(quavin_buffer) == 40 && offsetof(quavin_buffer, user) == 32);
static_assert(sizeof(quavin_metadata) == 56 && offsetof(quavin_metadata, reserved) == 52);
static_assert(sizeof(quavin_port) == 64 && offsetof(quavin_port, reserved) == 60);
static_assert(sizeof(quavin_output) == 56 && offsetof(quavin_output, reserved) == 52);
static_assert(sizeof(quavin_engine_details) == 64 &&
              offsetof(quavin_engine_details, streams) == 60);
static_assert(sizeof(quavin_registry_entry) == 32 &&
              offsetof(quavin_registry_entry, memory_limit) == 24);

}  // namespace
}  // namespace VelmoraQuavin::internal
