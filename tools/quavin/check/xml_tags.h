#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quavin_tool {

/// One tag of an XML text, as views into it.
struct XmlTag {
    enum class Kind { kOpen, kClose, kEmpty };

    Kind kind = Kind::kOpen;
    std::string_view name;
    std::string_view attributes;

    /// The value of an attribute with references resolved; empty if there is none.
    std::string attribute(std::string_view wanted) const;
};

/// Iterates over the tags of a text that a real parser accepts. For any text it takes linear time
/// and stays in bounds. The adapter has its own reader, which cannot be used here: this program
/// links only the library, which exports no XML.
class XmlTags {
public:
    explicit XmlTags(std::string_view text) : rest_(text) {}

    /// The next tag, skipping comments, declarations and the text between tags; nothing at the end
    /// or if the text stops being XML.
    std::optional<XmlTag> next();

private:
    bool skipPast(std::string_view end);

    std::string_view rest_;
};

}  // namespace quavin_tool
