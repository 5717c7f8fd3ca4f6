#pragma once

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <cstdint>
#include <string>
#include <vector>

#include "quavin/feature.h"
#include "quavin/tensor.h"
#include "quavin/text.h"

namespace quavin_tool {

/// A text from a package, made safe to print on a terminal.
std::string printable(const VelmoraQuavin::String& text);

/// Rows with aligned columns, one indented line per row.
std::string table(const std::vector<std::vector<std::string>>& rows);

/// "12 bytes", "3.4 MiB".
std::string readableSize(std::uint64_t bytes);

/// The names of features in quotes, separated by commas.
std::string quotedNames(const std::vector<VelmoraQuavin::ModelFeatureDescriptor>& features);

/// "float"; "none" for a type that no tensor has.
std::string typeName(VelmoraQuavin::DataType type);
/// "[1, 10]".
std::string shapeText(const VelmoraQuavin::TensorShape& shape);
/// As above, but "variable" if dimensions are unknown.
std::string shapeText(const VelmoraQuavin::TensorDescriptor& descriptor);

/// Writes indented JSON.
class JsonOutput {
public:
    using Writer = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

    JsonOutput() { writer_.SetIndent(' ', 2); }

    void beginObject() { writer_.StartObject(); }
    void endObject() { writer_.EndObject(); }
    void beginArray(const char* name) {
        writer_.Key(name);
        writer_.StartArray();
    }
    void endArray() { writer_.EndArray(); }
    void beginObject(const char* name) {
        writer_.Key(name);
        writer_.StartObject();
    }
    void member(const char* name, const VelmoraQuavin::String& value);
    void member(const char* name, const char* value) { member(name, VelmoraQuavin::String(value)); }
    void member(const char* name, bool value);
    void member(const char* name, int value);
    void member(const char* name, std::uint64_t value);
    void member(const char* name, double value);
    /// An array of numbers, with null for those that are not finite.
    void numbers(const char* name, const std::vector<double>& values);
    /// A shape as an array, or null if it is variable.
    void shape(const char* name, const VelmoraQuavin::TensorShape* value);
    void texts(const char* name, const std::vector<VelmoraQuavin::String>& values);
    /// An array with the name, type and shape of each tensor.
    void ports(const char* name,
               const std::vector<VelmoraQuavin::ModelFeatureDescriptor>& features);

    /// The JSON text written so far.
    std::string text() const;

private:
    void string(const VelmoraQuavin::String& value);
    void number(double value);
    void port(const VelmoraQuavin::ModelFeatureDescriptor& feature);

    rapidjson::StringBuffer buffer_;
    Writer writer_{buffer_};
};

}  // namespace quavin_tool
