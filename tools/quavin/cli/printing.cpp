#include "tools/quavin/cli/printing.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <string_view>

#include "tensor/tensor_texts.h"
#include "text/unicode.h"

namespace quavin_tool {

using VelmoraQuavin::DataType;
using VelmoraQuavin::TensorDescriptor;
using VelmoraQuavin::TensorShape;

namespace {

// Also escapes characters that JSON allows unescaped but that a terminal would interpret.
std::string jsonString(std::string_view bytes) {
    std::string valid;
    utf8::replace_invalid(bytes.begin(), bytes.end(), std::back_inserter(valid), U'?');
    std::string quoted = "\"";
    for (auto next = valid.cbegin(); next != valid.cend();) {
        const std::uint32_t character = utf8::unchecked::next(next);
        if (character == '"' || character == '\\') {
            quoted += '\\';
        }
        if (VelmoraQuavin::internal::isPrintable(character)) {
            utf8::unchecked::append(character, std::back_inserter(quoted));
            continue;
        }
        std::array<char, 8> escape{};
        static_cast<void>(std::snprintf(escape.data(), escape.size(), "\\u%04x", character));
        quoted += escape.data();
    }
    return quoted + '"';
}

}  // namespace

std::string printable(const VelmoraQuavin::String& text) {
    return VelmoraQuavin::internal::printableText(text.view());
}

std::string table(const std::vector<std::vector<std::string>>& rows) {
    const auto width = [](const std::string& cell) {
        return static_cast<std::size_t>(utf8::distance(cell.begin(), cell.end()));
    };
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], width(row[column]));
        }
    }
    std::string text;
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column) {
            line += "  " + row[column];
            line.append(widths[column] - width(row[column]), ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    }
    return text;
}

std::string quotedNames(const std::vector<VelmoraQuavin::ModelFeatureDescriptor>& features) {
    std::string text;
    for (const VelmoraQuavin::ModelFeatureDescriptor& feature : features) {
        text += (text.empty() ? "\"" : ", \"") + feature.name().str() + "\"";
    }
    return text;
}

std::string typeName(DataType type) {
    return VelmoraQuavin::internal::dataTypeName(type);
}

std::string shapeText(const TensorShape& shape) {
    return VelmoraQuavin::internal::shapeText(shape);
}

std::string shapeText(const TensorDescriptor& descriptor) {
    return descriptor.variableShape() ? "variable" : shapeText(descriptor.shape());
}

void JsonOutput::member(const char* name, const VelmoraQuavin::String& value) {
    writer_.Key(name);
    string(value);
}

void JsonOutput::string(const VelmoraQuavin::String& value) {
    const std::string text = jsonString(value.view());
    writer_.RawValue(text.data(), text.size(), rapidjson::kStringType);
}

void JsonOutput::texts(const char* name, const std::vector<VelmoraQuavin::String>& values) {
    beginArray(name);
    for (const VelmoraQuavin::String& value : values) {
        string(value);
    }
    endArray();
}

void JsonOutput::member(const char* name, bool value) {
    writer_.Key(name);
    writer_.Bool(value);
}

void JsonOutput::member(const char* name, int value) {
    writer_.Key(name);
    writer_.Int(value);
}

void JsonOutput::member(const char* name, std::uint64_t value) {
    writer_.Key(name);
    writer_.Uint64(value);
}

void JsonOutput::member(const char* name, double value) {
    writer_.Key(name);
    number(value);
}

void JsonOutput::numbers(const char* name, const std::vector<double>& values) {
    writer_.Key(name);
    writer_.SetFormatOptions(rapidjson::kFormatSingleLineArray);
    writer_.StartArray();
    for (const double value : values) {
        number(value);
    }
    writer_.EndArray();
    writer_.SetFormatOptions(rapidjson::kFormatDefault);
}

void JsonOutput::number(double value) {
    // JSON has no NaN or infinity.
    if (std::isfinite(value)) {
        writer_.Double(value);
    } else {
        writer_.Null();
    }
}

void JsonOutput::shape(const char* name, const TensorShape* value) {
    writer_.Key(name);
    if (value == nullptr) {
        writer_.Null();
        return;
    }
    writer_.SetFormatOptions(rapidjson::kFormatSingleLineArray);
    writer_.StartArray();
    for (const VelmoraQuavin::int64 extent : value->shapeVector()) {
        writer_.Int64(extent);
    }
    writer_.EndArray();
    writer_.SetFormatOptions(rapidjson::kFormatDefault);
}

void JsonOutput::ports(const char* name,
                       const std::vector<VelmoraQuavin::ModelFeatureDescriptor>& features) {
    beginArray(name);
    for (const VelmoraQuavin::ModelFeatureDescriptor& feature : features) {
        port(feature);
    }
    endArray();
}

void JsonOutput::port(const VelmoraQuavin::ModelFeatureDescriptor& feature) {
    const TensorDescriptor& tensor = feature.tensorDescriptor();
    beginObject();
    member("name", feature.name());
    member("dataType", typeName(tensor.tensorType()));
    if (tensor.variableShape()) {
        shape("shape", nullptr);
    } else {
        const TensorShape known = tensor.shape();
        shape("shape", &known);
    }
    endObject();
}

std::string JsonOutput::text() const {
    return {buffer_.GetString(), buffer_.GetSize()};
}

std::string readableSize(std::uint64_t bytes) {
    if (bytes < 1024) {
        return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    }
    constexpr std::array<const char*, 4> kUnits{"KiB", "MiB", "GiB", "TiB"};
    double value = static_cast<double>(bytes) / 1024;
    std::size_t unit = 0;
    while (value >= 1024 && unit + 1 < kUnits.size()) {
        value /= 1024;
        ++unit;
    }
    std::array<char, 32> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), "%.1f %s", value, kUnits.at(unit)));
    return text.data();
}

}  // namespace quavin_tool
