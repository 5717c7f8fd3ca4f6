#pragma once

#include <cstddef>
#include <vector>

#include "quavin/c.h"
#include "quavin/package_memory.h"

namespace VelmoraQuavin::internal {

/// The files of a package that the caller hands over. Whatever happens, each one's release function
/// is called exactly once.
class PackageBuffers {
public:
    /// Takes over every buffer, even if it throws.
    /// @throws std::bad_alloc
    PackageBuffers(const quavin_buffer* buffers, std::size_t count);

    /// @throws InvalidArgumentsException if there is no array, or a buffer without a name.
    const std::vector<PackageBuffer>& files() const;

private:
    bool given_;
    bool named_ = true;
    std::vector<PackageBuffer> files_;
};

}  // namespace VelmoraQuavin::internal
