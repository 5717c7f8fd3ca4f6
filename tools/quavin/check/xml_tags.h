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

    /// The value of an attribute with its references replaced; empty where there is none.
    std::string attribute(std::string_view wanted) const;
};

/// Walks over the tags of a text that a real parser accepts. Whatever the text is, it takes linear
/// time and reads nothing outside of it. The adapter has a reader of its own: this program links
/// the library alone, and the library exports no XML.
class XmlTags {
public:
    explicit XmlTags(std::string_view text) : rest_(text) {}

    /// The next tag, without comments, declarations and the text between tags; nothing at the end,
    /// and where the text stops being XML.
    std::optional<XmlTag> next();

private:
    bool skipPast(std::string_view end);

    std::string_view rest_;
};

}  // namespace quavin_tool
