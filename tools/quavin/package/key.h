#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>

#include "tools/quavin/cli/parser_fwd.h"

namespace quavin_tool {

constexpr std::size_t kKeySize = 16;

/// Where a command gets its key from. Never from its arguments, which other users can see.
struct KeyOptions {
    std::string file;
    std::string variable;
    bool allowOpenFile = false;

    bool given() const { return !file.empty() || !variable.empty(); }
};

void addKeyOptions(CLI::App& command, KeyOptions& options);

/// A key of sixteen bytes, wiped on destruction.
class Key {
public:
    /// @throws FileException, InvalidArgumentsException if there is no key of sixteen raw bytes or
    ///         32 hexadecimal digits.
    explicit Key(const KeyOptions& options);
    /// A random key.
    Key();
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key();

    const unsigned char* bytes() const { return bytes_.data(); }

private:
    void readVariable(const std::string& name);
    // Takes 16 raw bytes, or 32 hexadecimal digits with or without a line break.
    bool parse(const unsigned char* text, std::size_t size);

    std::array<unsigned char, kKeySize> bytes_{};
};

/// The sixteen bytes of a key; null if there is none.
inline const unsigned char* bytesOf(const Key* key) {
    return key == nullptr ? nullptr : key->bytes();
}

/// The key that the options name; null if they name none.
std::unique_ptr<Key> readKey(const KeyOptions& options);

/// Masks words in a message that look like a key: one may have been given in place of a file
/// name.
std::string withoutKeys(const std::string& text);

}  // namespace quavin_tool
