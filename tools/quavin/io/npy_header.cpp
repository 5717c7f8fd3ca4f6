#include "tools/quavin/io/npy_header.h"

#include <algorithm>
#include <charconv>

namespace quavin_tool {
namespace {

using VelmoraQuavin::int64;

class HeaderParser {
public:
    explicit HeaderParser(std::string_view text) : rest_(text) {}

    std::optional<NpyHeader> parse() {
        NpyHeader header;
        int members = 0;
        bool fine = take('{');
        while (fine && !take('}')) {
            fine = parseMember(header);
            ++members;
            if (fine && !take(',')) {
                fine = take('}');
                break;
            }
        }
        skipBlanks();
        return fine && members == 3 && rest_.empty() ? std::optional(header) : std::nullopt;
    }

private:
    void skipBlanks() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(" \n"), rest_.size()));
    }

    bool take(char expected) {
        skipBlanks();
        const bool there = !rest_.empty() && rest_.front() == expected;
        rest_.remove_prefix(there ? 1 : 0);
        return there;
    }

    bool takeWord(std::string_view word) {
        skipBlanks();
        const bool there = rest_.substr(0, word.size()) == word;
        rest_.remove_prefix(there ? word.size() : 0);
        return there;
    }

    bool parseText(std::string_view& text) {
        if (!take('\'')) {
            return false;
        }
        const std::size_t end = rest_.find('\'');
        if (end == std::string_view::npos) {
            return false;
        }
        text = rest_.substr(0, end);
        rest_.remove_prefix(end + 1);
        return true;
    }

    bool parseShape(std::vector<int64>& shape) {
        if (!take('(')) {
            return false;
        }
        while (!take(')')) {
            skipBlanks();
            int64 extent = -1;
            const auto [end, error] =
                std::from_chars(rest_.data(), rest_.data() + rest_.size(), extent);
            if (error != std::errc() || extent < 0) {
                return false;
            }
            rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
            shape.push_back(extent);
            if (!take(',')) {
                return take(')');
            }
        }
        return true;
    }

    bool parseMember(NpyHeader& header) {
        std::string_view key;
        if (!parseText(key) || !take(':')) {
            return false;
        }
        if (key == "descr") {
            return parseText(header.type);
        }
        if (key == "fortran_order") {
            header.fortranOrder = takeWord("True");
            return header.fortranOrder || takeWord("False");
        }
        return key == "shape" && parseShape(header.shape);
    }

    std::string_view rest_;
};

}  // namespace

std::optional<NpyHeader> parseNpyHeader(std::string_view text) {
    return HeaderParser(text).parse();
}

}  // namespace quavin_tool
