#pragma once

#include <cstdint>
#include <string>

#include "platform/confined_directory.h"

namespace VelmoraQuavin::internal::platform {

/// The part that each system implements.
class ConfinedDirectory::Implementation {
public:
    Implementation() = default;
    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;
    virtual ~Implementation() = default;

    /// Makes a directory the current one, creating what is missing on the way.
    virtual std::string enter(Names::const_iterator begin, Names::const_iterator end) = 0;
    /// Writes a file into the current directory.
    virtual std::string write(const std::string& name, const void* content, std::uint64_t size) = 0;
};

}  // namespace VelmoraQuavin::internal::platform
