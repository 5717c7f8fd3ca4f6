#include "key.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "core/secure_wipe.h"
#include "platform/aes_encryption.h"
#include "platform/private_file.h"
#include "platform/process.h"
#include "quavin/status.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::FileException;
using VelmoraQuavin::InvalidArgumentsException;
using VelmoraQuavin::internal::secureWipe;
using VelmoraQuavin::internal::WipeOnExit;
namespace platform = VelmoraQuavin::internal::platform;

constexpr const char* kForms = "a key is 16 raw bytes or 32 hexadecimal digits";

// Of a longer file this much is enough to see that it is no key.
constexpr std::size_t kLargestKeyFile = 40;

int digitValue(unsigned char digit) {
    constexpr std::string_view kDigits = "0123456789abcdef0123456789ABCDEF";
    const std::size_t found = kDigits.find(static_cast<char>(digit));
    return found == std::string_view::npos ? -1 : static_cast<int>(found % 16);
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
                     "Accept a key file that others than its owner may read");
}

Key::Key(const KeyOptions& options) {
    if (!options.variable.empty()) {
        readVariable(options.variable);
        return;
    }
    std::array<unsigned char, kLargestKeyFile> text{};
    const WipeOnExit wipe(text.data(), text.size());
    std::size_t size = 0;
    std::string problem;
    const auto others =
        options.allowOpenFile ? platform::OpenToOthers::kAllowed : platform::OpenToOthers::kRefused;
    switch (
        platform::readPrivateFile(options.file, others, text.data(), text.size(), size, problem)) {
        case platform::PrivateReading::kDone:
            break;
        case platform::PrivateReading::kOpenToOthers:
            problem += ", or give --allow-open-key-file";
            [[fallthrough]];
        default:
            throw FileException("The key file " + options.file + " " + problem);
    }
    if (!parse(text.data(), size)) {
        throw InvalidArgumentsException("The file " + options.file + " holds no key: " + kForms);
    }
}

void Key::readVariable(const std::string& name) {
    std::optional<std::string> value = platform::environmentVariable(name);
    if (!value.has_value()) {
        throw InvalidArgumentsException("There is no environment variable " + name);
    }
    std::string& text = *value;
    const WipeOnExit wipe(text.data(), text.size());
    if (!parse(reinterpret_cast<const unsigned char*>(text.data()), text.size())) {
        throw InvalidArgumentsException("The environment variable " + name +
                                        " holds no key: " + kForms);
    }
}

Key::Key() {
    if (!platform::fillRandom(bytes_.data(), bytes_.size())) {
        throw VelmoraQuavin::Exception("The system has no random bytes to give");
    }
}

Key::~Key() {
    secureWipe(bytes_.data(), bytes_.size());
}

std::unique_ptr<Key> readKey(const KeyOptions& options) {
    return options.given() ? std::make_unique<Key>(options) : nullptr;
}

bool Key::parse(const unsigned char* text, std::size_t size) {
    if (size == kKeySize) {
        std::memcpy(bytes_.data(), text, kKeySize);
        return true;
    }
    if (withoutLineEnd(text, size) != 2 * kKeySize) {
        return false;
    }
    const auto isDigit = [](unsigned char character) { return digitValue(character) >= 0; };
    // Before the first byte of the key is there: what is no key is not kept.
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
