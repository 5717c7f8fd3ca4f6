#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "quavin/status.h"

namespace quavin_tool {

/// Serialises numbers and texts for another process of this program.
class MessageWriter {
public:
    void number(std::uint64_t value) {
        bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    void text(std::string_view value) {
        number(value.size());
        bytes_ += value;
    }
    /// Reserves room, so that bytes are not copied as the message grows.
    void reserve(std::size_t size) { bytes_.reserve(size); }

    std::string& bytes() { return bytes_; }

private:
    std::string bytes_;
};

/// Reads them in the same order. Nothing is trusted: the writer may have been compromised.
class MessageReader {
public:
    explicit MessageReader(std::string_view bytes) : bytes_(bytes) {}

    /// @throws Exception if the message ends early, like text().
    std::uint64_t number() {
        std::uint64_t value = 0;
        std::memcpy(&value, take(sizeof value).data(), sizeof value);
        return value;
    }
    std::string_view text() { return take(number()); }

private:
    std::string_view take(std::uint64_t size) {
        if (size > bytes_.size()) {
            throw VelmoraQuavin::Exception("A process of this program wrote an incomplete message");
        }
        const std::string_view taken = bytes_.substr(0, size);
        bytes_.remove_prefix(size);
        return taken;
    }

    std::string_view bytes_;
};

}  // namespace quavin_tool
