#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "quavin/status.h"

namespace quavin_tool {

/// Numbers and texts in a row, for another process of this program.
class MessageWriter {
public:
    void number(std::uint64_t value) {
        bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    void text(std::string_view value) {
        number(value.size());
        bytes_ += value;
    }
    /// Room for as many bytes, so that none of them is copied on the way.
    void reserve(std::size_t size) { bytes_.reserve(size); }

    std::string& bytes() { return bytes_; }

private:
    std::string bytes_;
};

/// Reads the same in the same order. Nothing is believed: what wrote it may have lost control.
class MessageReader {
public:
    explicit MessageReader(std::string_view bytes) : bytes_(bytes) {}

    /// @throws Exception where there is none left, as all do.
    std::uint64_t number() {
        std::uint64_t value = 0;
        std::memcpy(&value, take(sizeof value).data(), sizeof value);
        return value;
    }
    std::string_view text() { return take(number()); }

private:
    std::string_view take(std::uint64_t size) {
        if (size > bytes_.size()) {
            throw VelmoraQuavin::Exception("A process of this program wrote a message cut off");
        }
        const std::string_view taken = bytes_.substr(0, size);
        bytes_.remove_prefix(size);
        return taken;
    }

    std::string_view bytes_;
};

}  // namespace quavin_tool
