#include "tools/quavin/package/key.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "core/secure_wipe.h"
#include "platform/aes_encryption.h"
#include "platform/process.h"
#include "quavin/status.h"
#include "tools/quavin/package/owners_file.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::InvalidArgumentsException;
using VelmoraQuavin::internal::secureWipe;
using VelmoraQuavin::internal::WipeOnExit;
namespace platform = VelmoraQuavin::internal::platform;

const std::string kGivenFile = "The file given with --key-file";
constexpr const char* kForms = "a key is 16 raw bytes or 32 hexadecimal digits";

// Enough of a longer file to see that it is not a key.
constexpr std::size_t kLargestKeyFile = 40;

int digitValue(unsigned char digit) {
    constexpr std::string_view kDigits = "0123456789abcdef0123456789ABCDEF";
    const std::size_t found = kDigits.find(static_cast<char>(digit));
    return found == std::string_view::npos ? -1 : static_cast<int>(found % 16);
}

bool isDigit(char character) {
    return digitValue(static_cast<unsigned char>(character)) >= 0;
}

bool hasShapeOfKey(std::string_view text) {
    return text.size() == 2 * kKeySize && std::all_of(text.begin(), text.end(), isDigit);
}

// For a name that does not exist: sixteen characters may be a raw key.
bool mayBeKey(std::string_view name) {
    return hasShapeOfKey(name) || name.size() == kKeySize;
}

std::size_t withoutLineEnd(const unsigned char* text, std::size_t size) {
    if (size > 0 && text[size - 1] == '\n') {
        --size;
        if (size > 0 && text[size - 1] == '\r') {
            --size;
        }
    }
    return size;
}

}  // namespace

void addKeyOptions(CLI::App& command, KeyOptions& options) {
    CLI::Option* const file =
        command
            .add_option("--key-file", options.file,
                        "Read the key from FILE: 16 raw bytes or 32 hexadecimal digits")
            ->type_name("FILE");
    command
        .add_option("--key-env", options.variable,
                    "Read the key from the environment variable NAME, in the same forms")
        ->type_name("NAME")
        ->excludes(file);
    command.add_flag("--allow-open-key-file", options.allowOpenFile,
                     "Accept a key file that users other than its owner may read or change");
}

Key::Key(const KeyOptions& options) {
    if (!options.variable.empty()) {
        readVariable(options.variable);
        return;
    }
    std::array<unsigned char, kLargestKeyFile> text{};
    const WipeOnExit wipe(text.data(), text.size());
    const std::size_t size =
        readOwnersFile(options.file, options.allowOpenFile, text.data(), text.size(),
                       mayBeKey(options.file) ? kGivenFile : "The key file " + options.file);
    if (!parse(text.data(), size)) {
        throw InvalidArgumentsException(
            (hasShapeOfKey(options.file) ? kGivenFile : "The file " + options.file) +
            " contains no key: " + kForms);
    }
}

void Key::readVariable(const std::string& name) {
    std::optional<std::string> value = platform::environmentVariable(name);
    if (!value.has_value()) {
        throw InvalidArgumentsException(
            mayBeKey(name) ? "There is no environment variable with the name given with --key-env"
                           : "There is no environment variable " + name);
    }
    std::string& text = *value;
    const WipeOnExit wipe(text.data(), text.size());
    if (!parse(reinterpret_cast<const unsigned char*>(text.data()), text.size())) {
        throw InvalidArgumentsException((hasShapeOfKey(name) ? "The variable given with --key-env"
                                                             : "The environment variable " + name) +
                                        " contains no key: " + kForms);
    }
}

Key::Key() {
    if (!platform::fillRandom(bytes_.data(), bytes_.size())) {
        throw VelmoraQuavin::Exception("The system cannot provide random bytes");
    }
}

Key::~Key() {
    secureWipe(bytes_.data(), bytes_.size());
}

std::unique_ptr<Key> readKey(const KeyOptions& options) {
    return options.given() ? std::make_unique<Key>(options) : nullptr;
}

std::string withoutKeys(const std::string& text) {
    // A digest within a longer name stays, but each name in a path is checked.
    constexpr std::string_view kOfNames =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-";
    std::string shown;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find_first_not_of(kOfNames, begin), text.size());
        const std::string word = text.substr(begin, end - begin);
        shown += hasShapeOfKey(word) ? "(32 hexadecimal digits)" : word;
        if (end < text.size()) {
            shown += text[end];
        }
        begin = end + 1;
    }
    return shown;
}

bool Key::parse(const unsigned char* text, std::size_t size) {
    if (size == kKeySize) {
        std::memcpy(bytes_.data(), text, kKeySize);
        return true;
    }
    if (withoutLineEnd(text, size) != 2 * kKeySize) {
        return false;
    }
    // Check before the first byte is stored: never keep what is not a key.
    if (!std::all_of(text, text + 2 * kKeySize, isDigit)) {
        return false;
    }
    for (std::size_t i = 0; i < kKeySize; ++i) {
        bytes_.at(i) =
            static_cast<unsigned char>(digitValue(text[2 * i]) * 16 + digitValue(text[2 * i + 1]));
    }
    return true;
}

}  // namespace quavin_tool
