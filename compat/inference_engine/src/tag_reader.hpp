// Walks over the tags of an XML text that a real parser has accepted already.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace InferenceEngine::runtime {

/** One tag; views into the text it was read from. */
struct Tag {
    enum class Kind { Open, Close, Empty };

    Kind kind = Kind::Open;
    std::string_view name;
    std::string_view attributes;

    /** The value of an attribute as it is written; empty if there is none. */
    std::string_view attribute(std::string_view wanted) const;
};

/** Gives tag after tag, without comments, declarations and the text between tags. */
class TagReader {
public:
    explicit TagReader(std::string_view text) : rest_(text) {}

    /** Empty at the end of the text, and where it stops being XML. */
    std::optional<Tag> next();

private:
    bool skipPast(std::string_view end);

    std::string_view rest_;
};

/** A value with its character references ("&amp;", "&#38;") replaced; unknown ones stay as they
 * are. */
std::string decodeReferences(std::string_view value);

}  // namespace InferenceEngine::runtime
