#include "core/text_tools.h"

#include <utf8.h>

#include <iterator>
#include <stdexcept>

namespace VelmoraQuavin::internal {
namespace {

// The text of one standard library's converter, thrown here so that it is the same with every
// library.
constexpr const char* kBadConversion = "bad conversion";

}  // namespace

std::string utf16ToUtf8(const std::u16string& text) {
    std::string converted;
    converted.reserve(text.size());
    try {
        utf8::utf16to8(text.begin(), text.end(), std::back_inserter(converted));
    } catch (const utf8::exception&) {
        throw std::range_error(kBadConversion);
    }
    return converted;
}

void requireUtf8(std::string_view text) {
    if (!utf8::is_valid(text.begin(), text.end())) {
        throw std::range_error(kBadConversion);
    }
}

}  // namespace VelmoraQuavin::internal
