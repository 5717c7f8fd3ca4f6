#include "text/der.h"

#include <cstddef>

namespace VelmoraQuavin::internal {
namespace {

constexpr std::size_t kLongestShortForm = 0x7F;
constexpr std::size_t kLengthInOneMoreByte = 0x81;

}  // namespace

std::optional<std::string_view> takeDer(char tag, std::string_view& der) {
    if (der.size() < 2 || der[0] != tag) {
        return std::nullopt;
    }
    std::size_t size = static_cast<unsigned char>(der[1]);
    std::size_t header = 2;
    if (size == kLengthInOneMoreByte && der.size() > 2) {
        size = static_cast<unsigned char>(der[2]);
        header = 3;
    }
    if ((header == 2) != (size <= kLongestShortForm) || size > der.size() - header) {
        return std::nullopt;
    }
    const std::string_view content = der.substr(header, size);
    der.remove_prefix(header + size);
    return content;
}

std::string makeDer(char tag, std::string_view content) {
    return std::string{tag, static_cast<char>(content.size())} + std::string(content);
}

}  // namespace VelmoraQuavin::internal
