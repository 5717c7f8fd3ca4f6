#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/input_file.h"

namespace VelmoraQuavin::internal::platform {

/// The part that each system implements.
class InputFile::Implementation {
public:
    Implementation() = default;
    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;
    virtual ~Implementation() = default;

    /// Reads the next bytes.
    /// @param count at most kLargestTransfer.
    /// @param got receives how many there are: at most count, and 0 only at the end of the file.
    /// @return a human-readable reason if reading failed; empty if it succeeded.
    virtual std::string readSome(void* buffer, std::size_t count, std::size_t& got) = 0;
    /// Maps the beginning of the file.
    /// @param size at least 1.
    /// @param problem receives a human-readable reason on failure.
    virtual std::optional<MappedFile> map(std::size_t size, std::string& problem) const = 0;
};

}  // namespace VelmoraQuavin::internal::platform
