#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace VelmoraQuavin::internal {

/// The tags of DER that elliptic curve keys and signatures have.
namespace DerTag {
constexpr char kInteger = '\x02';
constexpr char kBits = '\x03';
constexpr char kBytes = '\x04';
constexpr char kIdentifier = '\x06';
constexpr char kSequence = '\x30';
}  // namespace DerTag

/// Takes an element off the front of `der`, whose content has less than 256 bytes.
/// @return its content; nothing, with `der` as it was, if there is no such element with this tag
///         and the one form of its length.
std::optional<std::string_view> takeDer(char tag, std::string_view& der);

/// Writes an element, whose content has less than 128 bytes.
std::string makeDer(char tag, std::string_view content);

}  // namespace VelmoraQuavin::internal
