#include "package/signature/ecdsa_signature.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "text/der.h"

namespace VelmoraQuavin::internal {
namespace {

using platform::EcCurve;
using namespace std::string_view_literals;

constexpr std::string_view orderOf(EcCurve curve) {
    return curve == EcCurve::kP256
               ? "\xFF\xFF\xFF\xFF\x00\x00\x00\x00\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"
                 "\xBC\xE6\xFA\xAD\xA7\x17\x9E\x84\xF3\xB9\xCA\xC2\xFC\x63\x25\x51"sv
               : "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"
                 "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xC7\x63\x4D\x81\xF4\x37\x2D\xDF"
                 "\x58\x1A\x0D\xB2\x48\xB0\xA7\x7A\xEC\xEC\x19\x6A\xCC\xC5\x29\x73"sv;
}

bool isNegative(char first) {
    return (static_cast<unsigned char>(first) & 0x80U) != 0;
}

// Appends the number of an INTEGER, in as many bytes as the order has.
bool appendNumber(std::string_view& der, std::string_view order,
                  std::vector<unsigned char>& halves) {
    std::optional<std::string_view> number = takeDer(DerTag::kInteger, der);
    if (!number.has_value() || number->empty() || isNegative(number->front())) {
        return false;
    }
    if (number->front() == '\0') {
        number->remove_prefix(1);
        if (number->empty() || !isNegative(number->front())) {
            return false;  // zero, or a byte too many
        }
    }
    if (number->size() > order.size()) {
        return false;
    }
    const std::string whole =
        std::string(order.size() - number->size(), '\0') + std::string(*number);
    halves.insert(halves.end(), whole.begin(), whole.end());
    return std::string_view(whole) < order;  // compares as unsigned characters
}

}  // namespace

std::optional<platform::EcdsaSignature> readEcdsaSignature(std::string_view der, EcCurve curve) {
    platform::EcdsaSignature signature{{der.begin(), der.end()}, {}};
    std::optional<std::string_view> numbers = takeDer(DerTag::kSequence, der);
    const std::string_view order = orderOf(curve);
    if (!numbers.has_value() || !der.empty() || !appendNumber(*numbers, order, signature.halves) ||
        !appendNumber(*numbers, order, signature.halves) || !numbers->empty()) {
        return std::nullopt;
    }
    return signature;
}

}  // namespace VelmoraQuavin::internal
