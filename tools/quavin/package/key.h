#pragma once

#include <CLI/CLI.hpp>
#include <array>
#include <cstddef>
#include <memory>
#include <string>

namespace quavin_tool {

constexpr std::size_t kKeySize = 16;

/// Where a command gets its key from; never from its own arguments, which other users can see.
struct KeyOptions {
    std::string file;
    std::string variable;
    bool allowOpenFile = false;

    bool given() const { return !file.empty() || !variable.empty(); }
};

void addKeyOptions(CLI::App& command, KeyOptions& options);

/// A key of sixteen bytes, wiped when it goes.
class Key {
public:
    /// @throws FileException, InvalidArgumentsException where there is no key of sixteen raw bytes
    ///         or 32 hexadecimal digits.
    explicit Key(const KeyOptions& options);
    /// A random one.
    Key();
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key();

    const unsigned char* bytes() const { return bytes_.data(); }

private:
    void readVariable(const std::string& name);
    // 16 raw bytes, or 32 hexadecimal digits with or without a line end.
    bool parse(const unsigned char* text, std::size_t size);

    std::array<unsigned char, kKeySize> bytes_{};
};

/// The key that the options name; null where they name none.
std::unique_ptr<Key> readKey(const KeyOptions& options);

/// A text for people without the words in it that have the shape of a key: somebody may have given
/// one in place of a file's name.
std::string withoutKeys(const std::string& text);

}  // namespace quavin_tool
