#pragma once

#include <memory>
#include <streambuf>
#include <utility>

#include "engine/cache/entry_buffer.h"

namespace VelmoraQuavin::internal {

/// Reads the content of an entry where it is. The engine may go on reading it there, so it shares
/// this object: see InferenceEngine::Core::ImportNetwork.
class EntryInput : public std::streambuf, public std::enable_shared_from_this<std::streambuf> {
public:
    explicit EntryInput(EntryBuffer entry) : entry_(std::move(entry)) {
        auto* const begin = reinterpret_cast<char*>(entry_.content());
        setg(begin, begin, begin + entry_.size());
    }

protected:
    /// Nothing follows the get area.
    std::streamsize showmanyc() override { return -1; }

private:
    EntryBuffer entry_;
};

/// Appends to the content of an entry.
class EntryOutput : public std::streambuf {
public:
    explicit EntryOutput(EntryBuffer& entry) : entry_(entry) {}

protected:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        entry_.append(bytes, static_cast<std::size_t>(count));
        return count;
    }
    int_type overflow(int_type byte) override {
        if (!traits_type::eq_int_type(byte, traits_type::eof())) {
            const char character = traits_type::to_char_type(byte);
            entry_.append(&character, 1);
        }
        return traits_type::not_eof(byte);
    }

private:
    EntryBuffer& entry_;
};

}  // namespace VelmoraQuavin::internal
