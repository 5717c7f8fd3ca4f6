#pragma once

/// @file
/// The string type of the interface.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <functional>
#include <ios>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

#include "quavin/export.h"

namespace VelmoraQuavin {

using int64 = std::int64_t;    ///< Signed 64-bit integer of the interface.
using uint64 = std::uint64_t;  ///< Unsigned 64-bit integer of the interface.

/// Character traits of an 8-bit unsigned byte.
///
/// The standard guarantees `std::char_traits` only for its own character types, so the library
/// provides traits for `unsigned char` itself.
struct ByteTraits {
    using char_type = unsigned char;    ///< One byte.
    using int_type = int;               ///< Holds any byte, or the end value.
    using off_type = std::streamoff;    ///< Offset type.
    using pos_type = std::streampos;    ///< Position type.
    using state_type = std::mbstate_t;  ///< Conversion state, never used.

    /// Stores `source` into `target`.
    static void assign(char_type& target, const char_type& source) noexcept { target = source; }
    /// Fills `count` bytes with `value`.
    static char_type* assign(char_type* target, std::size_t count, char_type value) noexcept {
        return count == 0 ? target : static_cast<char_type*>(std::memset(target, value, count));
    }
    /// Whether two bytes are equal.
    static bool eq(char_type left, char_type right) noexcept { return left == right; }
    /// Whether a byte sorts before another, by its unsigned value.
    static bool lt(char_type left, char_type right) noexcept { return left < right; }
    /// Compares two ranges of bytes by their unsigned values.
    static int compare(const char_type* left, const char_type* right, std::size_t count) noexcept {
        return count == 0 ? 0 : std::memcmp(left, right, count);
    }
    /// The number of bytes before the first zero byte.
    static std::size_t length(const char_type* text) noexcept {
        return std::strlen(reinterpret_cast<const char*>(text));
    }
    /// The first occurrence of a value in a range of bytes, or null.
    static const char_type* find(const char_type* text, std::size_t count,
                                 const char_type& value) noexcept {
        return count == 0 ? nullptr
                          : static_cast<const char_type*>(std::memchr(text, value, count));
    }
    /// Copies bytes between ranges that may overlap.
    static char_type* move(char_type* target, const char_type* source, std::size_t count) noexcept {
        return count == 0 ? target : static_cast<char_type*>(std::memmove(target, source, count));
    }
    /// Copies bytes between ranges that do not overlap.
    static char_type* copy(char_type* target, const char_type* source, std::size_t count) noexcept {
        return count == 0 ? target : static_cast<char_type*>(std::memcpy(target, source, count));
    }
    /// The byte held by an integer.
    static char_type to_char_type(int_type value) noexcept { return static_cast<char_type>(value); }
    /// The integer that holds a byte.
    static int_type to_int_type(char_type value) noexcept { return value; }
    /// Whether two integers hold the same byte or are both the end.
    static bool eq_int_type(int_type left, int_type right) noexcept { return left == right; }
    /// The end value, which is not a byte.
    static int_type eof() noexcept { return -1; }
    /// `value` itself, or some other value if it is the end.
    static int_type not_eof(int_type value) noexcept { return value == eof() ? 0 : value; }
};

/// A string of UTF-8 bytes: the type of every name, path and message in the interface.
///
/// It converts implicitly from narrow literals, `std::string` and `std::string_view`, and back
/// through str() and view(). The bytes are not validated; a zero byte is a byte like any other,
/// though paths and messages are read only up to the first one.
///
/// A value type: it owns its bytes. Several threads may read one object at once.
///
/// @code
/// VelmoraQuavin::String name = "digits";
/// std::cout << name << " has " << name.size() << " bytes\n";
/// std::string narrow = name.str();
/// @endcode
class String {
public:
    /// The underlying string type.
    using Bytes = std::basic_string<unsigned char, ByteTraits>;

    /// An empty string.
    String() noexcept = default;
    /// The characters up to the first zero byte; a null pointer yields an empty string.
    String(const char* text)
        : String(text == nullptr ? std::string_view() : std::string_view(text)) {}
    /// The characters up to the first zero byte; a null pointer yields an empty string.
    String(const unsigned char* text) : String(reinterpret_cast<const char*>(text)) {}
    /// All characters of `text`, zero bytes included.
    String(std::string_view text) : String(text.data(), text.size()) {}
    /// All characters of `text`, zero bytes included.
    String(const std::string& text) : String(text.data(), text.size()) {}
    /// The `size` characters at `text`, zero bytes included.
    String(const char* text, std::size_t size)
        : bytes_(reinterpret_cast<const unsigned char*>(text), size) {}
    /// The `size` bytes at `text`, zero bytes included.
    String(const unsigned char* text, std::size_t size) : bytes_(text, size) {}

    /// The bytes, followed by a zero byte; valid until the string changes.
    const unsigned char* c_str() const noexcept { return bytes_.c_str(); }
    /// The bytes, followed by a zero byte; valid until the string changes.
    const unsigned char* data() const noexcept { return bytes_.data(); }
    /// The number of bytes.
    std::size_t size() const noexcept { return bytes_.size(); }
    /// Whether there are no bytes.
    bool empty() const noexcept { return bytes_.empty(); }

    /// A copy as `std::string`.
    std::string str() const { return std::string(view()); }
    /// A view of the bytes; valid until the string changes.
    std::string_view view() const noexcept {
        return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()};
    }

    /// The byte at `index`, which must be less than size().
    const unsigned char& operator[](std::size_t index) const noexcept { return bytes_[index]; }
    /// The byte at `index`, which must be less than size().
    unsigned char& operator[](std::size_t index) noexcept { return bytes_[index]; }
    /// The first byte.
    Bytes::const_iterator begin() const noexcept { return bytes_.begin(); }
    /// One past the last byte.
    Bytes::const_iterator end() const noexcept { return bytes_.end(); }

    /// Appends the bytes of `other`.
    String& append(const String& other) {
        bytes_.append(other.bytes_);
        return *this;
    }
    /// Appends the bytes of `other`.
    String& operator+=(const String& other) { return append(other); }
    /// Removes all bytes.
    void clear() noexcept { bytes_.clear(); }

    /// The bytes of `left`, then those of `right`.
    friend String operator+(String left, const String& right) {
        left.append(right);
        return left;
    }
    /// Whether both hold the same bytes.
    friend bool operator==(const String& left, const String& right) noexcept {
        return left.bytes_ == right.bytes_;
    }
    /// Whether the bytes differ.
    friend bool operator!=(const String& left, const String& right) noexcept {
        return left.bytes_ != right.bytes_;
    }
    /// Whether `left` sorts before `right`, byte by byte.
    friend bool operator<(const String& left, const String& right) noexcept {
        return left.bytes_ < right.bytes_;
    }

private:
    Bytes bytes_;
};

/// Writes all bytes of `text`, zero bytes included; respects the stream's width.
QUAVIN_API std::ostream& operator<<(std::ostream& stream, const String& text);

}  // namespace VelmoraQuavin

/// Hashes the bytes, so that String can be a key of the standard hash containers.
template <>
struct std::hash<VelmoraQuavin::String> {
    /// The hash of all bytes of `text`.
    std::size_t operator()(const VelmoraQuavin::String& text) const noexcept {
        return std::hash<std::string_view>()(text.view());
    }
};
