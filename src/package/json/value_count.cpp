#include "package/json/value_count.h"

#include <cstddef>

namespace VelmoraQuavin::internal {

// Every value but the first comes after one of three characters. The count is exact up to the first
// syntax error, and parsing gets no further than that.
bool hasMoreValues(std::string_view text, uint64 most) {
    uint64 values = 1;
    bool inString = false;
    for (std::size_t i = 0; i < text.size() && values <= most; ++i) {
        const char character = text[i];
        if (inString && character == '\\') {
            ++i;  // an escaped character does not end the string
        } else if (character == '"') {
            inString = !inString;
        } else if (!inString && (character == ',' || character == '[' || character == '{')) {
            ++values;
        }
    }
    return values > most;
}

}  // namespace VelmoraQuavin::internal
