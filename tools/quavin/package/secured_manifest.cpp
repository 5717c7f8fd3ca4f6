#include "tools/quavin/package/secured_manifest.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <array>
#include <vector>

#include "quavin/metadata.h"
#include "text/unicode.h"

namespace quavin_tool {
namespace {

using rapidjson::SizeType;
using VelmoraQuavin::ComponentKind;
using VelmoraQuavin::EngineKey;

// Copies what is read, replacing only the kinds of components.
class Securing : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Securing> {
public:
    explicit Securing(rapidjson::StringBuffer& output) : writer_(output) {}

    bool Null() { return writer_.Null(); }
    bool Bool(bool value) { return writer_.Bool(value); }
    bool RawNumber(const char* text, SizeType length, bool /*copy*/) {
        return writer_.RawValue(text, length, rapidjson::kNumberType);
    }
    bool String(const char* text, SizeType length, bool /*copy*/) {
        const bool isFile = std::string_view(text, length) == ComponentKind::File.view();
        const std::string_view kind = isFile && isKindOfComponent()
                                          ? ComponentKind::SecuredFile.view()
                                          : std::string_view(text, length);
        return writer_.String(kind.data(), static_cast<SizeType>(kind.size()));
    }
    bool Key(const char* text, SizeType length, bool /*copy*/) {
        path_.back().assign(text, length);
        return writer_.Key(text, length);
    }
    bool StartObject() {
        path_.emplace_back();
        return writer_.StartObject();
    }
    bool EndObject(SizeType /*count*/) {
        path_.pop_back();
        return writer_.EndObject();
    }
    bool StartArray() {
        path_.emplace_back();
        return writer_.StartArray();
    }
    bool EndArray(SizeType /*count*/) {
        path_.pop_back();
        return writer_.EndArray();
    }

private:
    // The components are elements of an array, hence the empty name.
    bool isKindOfComponent() const {
        const std::array<std::string_view, 5> kinds{"targets", EngineKey::Openvino.view(),
                                                    "components", "", "name"};
        return std::equal(path_.begin(), path_.end(), kinds.begin(), kinds.end());
    }

    rapidjson::Writer<rapidjson::StringBuffer> writer_;
    std::vector<std::string> path_;
};

}  // namespace

std::string withSecuredFiles(std::string_view manifest) {
    manifest.remove_prefix(VelmoraQuavin::internal::byteOrderMarkSize(manifest));
    rapidjson::StringBuffer output;
    Securing securing(output);
    rapidjson::MemoryStream input(manifest.data(), manifest.size());
    // As in the library: nesting uses memory, not the stack.
    constexpr unsigned kFlags =
        rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    rapidjson::Reader().Parse<kFlags>(input, securing);
    return {output.GetString(), output.GetSize()};
}

}  // namespace quavin_tool
