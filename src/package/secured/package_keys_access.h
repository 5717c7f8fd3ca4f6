#pragma once

#include "quavin/package_memory.h"

namespace VelmoraQuavin::internal {

/// Access to keys that hosts cannot read back.
struct PackageKeysAccess {
    /// Null if there is none; valid until the keys change.
    static const Encryption* archiveKey(const PackageKeys& keys) {
        return keys.archiveKey_.has_value() ? &*keys.archiveKey_ : nullptr;
    }
};

}  // namespace VelmoraQuavin::internal
