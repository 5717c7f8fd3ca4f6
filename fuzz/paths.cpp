// Texts that come from packages or hosts: conversions, paths and names.
#include <utf8.h>

#include <stdexcept>

#include "fuzz/promise.h"
#include "package/archive/tar_entry_path.h"
#include "package/path/package_path.h"
#include "quavin/files.h"
#include "quavin/text.h"
#include "text/portable_name.h"
#include "text/unicode.h"

using namespace VelmoraQuavin;
using quavin_fuzz::require;

namespace {

bool isUtf8(std::string_view text) {
    return utf8::is_valid(text.begin(), text.end());
}

void tryUtf8(std::string_view text) {
    bool isConverted = true;
    try {
        require(internal::utf16ToUtf8(internal::utf8ToUtf16(text)) == text,
                "a text survives UTF-16");
    } catch (const std::range_error&) {
        isConverted = false;
    }
    require(isConverted == isUtf8(text), "exactly UTF-8 is converted");
    const std::string printable = internal::printableText(text);
    require(isUtf8(printable) && internal::printableText(printable) == printable,
            "a printable text is UTF-8, and stays as it is");
}

void tryUtf16(std::string_view bytes) {
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        text += static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) << 8 |
                                      static_cast<unsigned char>(bytes[i + 1]));
    }
    try {
        const std::string converted = internal::utf16ToUtf8(text);
        require(isUtf8(converted) && internal::utf8ToUtf16(converted) == text,
                "a text survives UTF-8");
    } catch (const std::range_error&) {
        return;  // a lone surrogate
    }
}

void tryPath(std::string_view text) {
    const std::string path = internal::packagePath(text);
    require(internal::packagePath(path) == path, "the one form of a path has one form");

    const Filepath joined = Filepath(String(text)).append(Filepath("name"));
    require(String(joined.parent_path().c_str()) == String(Filepath(String(text)).c_str()),
            "the parent of a joined path is what was joined");

    const internal::TarEntryPath entry = internal::parseTarEntryPath(text);
    for (const std::string& name : entry.names) {
        require(!entry.refusal.empty() || (!name.empty() && name != "." && name != ".." &&
                                           name.find_first_of("/\\") == std::string::npos),
                "an accepted name leads downwards");
    }
    if (internal::isPortableName(text)) {
        require(text != "." && text != ".." &&
                    text.find_first_of(std::string_view("/\\:\0", 4)) == std::string_view::npos,
                "a portable name is a single name");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = quavin_fuzz::textOf(data, size);
    tryUtf8(text);
    tryUtf16(text);
    tryPath(text);
    return 0;
}
