#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VelmoraQuavin::internal {

/// One tag of an XML text, as views into it.
struct XmlTag {
    enum class Kind { kOpen, kClose, kEmpty };

    Kind kind = Kind::kOpen;
    std::string_view name;
    std::string_view attributes;

    /// The value of an attribute as written, references included; empty if there is none.
    std::string_view attribute(std::string_view wanted) const;
};

/// Iterates over the tags of a text that a real parser accepts, such as a network's. Runs in
/// linear time and never reads out of bounds, whatever the text.
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

/// The names of the elements around an element, the root's first.
using XmlPath = std::vector<std::string_view>;

/// Walks over the elements of a text as XmlTags does over its tags; stops at a closing tag that
/// closes nothing.
/// @param visit called for each element, before those inside it, with its first tag and the path to
///        it.
template <typename Visit>
void visitElements(std::string_view text, const Visit& visit) {
    XmlTags tags(text);
    XmlPath path;
    while (const std::optional<XmlTag> tag = tags.next()) {
        if (tag->kind == XmlTag::Kind::kClose) {
            if (path.empty()) {
                break;
            }
            path.pop_back();
            continue;
        }
        visit(*tag, path);
        if (tag->kind == XmlTag::Kind::kOpen) {
            path.push_back(tag->name);
        }
    }
}

/// Replaces the references in a value ("&amp;", "&#38;"); unknown ones stay.
std::string withoutReferences(std::string_view value);

/// The items of a list in a value: references are replaced, commas separate, and a backslash makes
/// a comma part of an item.
std::vector<std::string> splitList(std::string_view value);

}  // namespace VelmoraQuavin::internal
