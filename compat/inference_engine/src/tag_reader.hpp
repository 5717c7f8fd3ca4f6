// Walks through the tags of an XML text that a real parser has already accepted.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace InferenceEngine::runtime {

/** One tag; a view into the text it was read from. */
struct Tag {
    enum class Kind { Open, Close, Empty };

    Kind kind = Kind::Open;
    std::string_view name;
    std::string_view attributes;

    /** The value of an attribute as written; empty if there is none. */
    std::string_view attribute(std::string_view wanted) const;
};

/** Returns one tag after another, skipping comments, declarations and the text between tags. */
class TagReader {
public:
    explicit TagReader(std::string_view text) : rest_(text) {}

    /** Nothing at the end of the text, or where it stops being XML. */
    std::optional<Tag> next();

private:
    bool skipPast(std::string_view end);

    std::string_view rest_;
};

/** Replaces the references in a value ("&amp;", "&#38;"); unknown ones are left unchanged. */
std::string decodeReferences(std::string_view value);

}  // namespace InferenceEngine::runtime
