// The text of a network, read tag by tag. A parser of the runtime has accepted a real one before.
#include <functional>

#include "fuzz/promise.h"
#include "text/xml_tags.h"

using quavin_fuzz::require;
using VelmoraQuavin::internal::splitList;
using VelmoraQuavin::internal::withoutReferences;
using VelmoraQuavin::internal::XmlPath;
using VelmoraQuavin::internal::XmlTag;

namespace {

bool isIn(std::string_view part, std::string_view text) {
    const std::less_equal<> isNotAfter;
    return part.empty() || (isNotAfter(text.data(), part.data()) &&
                            isNotAfter(part.data() + part.size(), text.data() + text.size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = quavin_fuzz::textOf(data, size);
    VelmoraQuavin::internal::visitElements(text, [text](const XmlTag& tag, const XmlPath&) {
        require(isIn(tag.name, text) && isIn(tag.attributes, text), "a tag is part of the text");
        for (const char* name : {"names", "id", ""}) {
            const std::string_view value = tag.attribute(name);
            require(isIn(value, tag.attributes), "a value is part of its tag");
            const std::string plain = withoutReferences(value);
            require(plain.size() <= value.size(), "no reference is shorter than its character");
            std::size_t listed = 0;
            for (const std::string& item : splitList(value)) {
                listed += item.size();
            }
            require(listed <= plain.size(), "a list has no characters of its own");
        }
    });
    return 0;
}
