#include "stream_content.hpp"

#include <algorithm>
#include <cstddef>
#include <istream>
#include <optional>
#include <streambuf>
#include <utility>

#include "failure.hpp"
#include "wiped_text.hpp"

namespace InferenceEngine::runtime {
namespace {

/** Reaches the get area of any stream buffer. */
struct GetArea : std::streambuf {
    static std::string_view unread(const std::streambuf& buffer) {
        const char* const next = (buffer.*&GetArea::gptr)();
        return {next, static_cast<std::size_t>((buffer.*&GetArea::egptr)() - next)};
    }

    /** Whether the buffer says that nothing follows what is unread, which it then counts as read.
     */
    static bool takeIfLast(std::streambuf& buffer) {
        char* const first = (buffer.*&GetArea::eback)();
        char* const next = (buffer.*&GetArea::gptr)();
        char* const end = (buffer.*&GetArea::egptr)();
        (buffer.*&GetArea::setg)(first, end, end);
        if (buffer.in_avail() == -1) {
            return true;
        }
        (buffer.*&GetArea::setg)(first, next, end);
        return false;
    }
};

std::optional<StreamContent> shared(std::streambuf& buffer) {
    auto* const self = dynamic_cast<std::enable_shared_from_this<std::streambuf>*>(&buffer);
    std::shared_ptr<const void> owner = self == nullptr ? nullptr : self->weak_from_this().lock();
    const std::string_view bytes = GetArea::unread(buffer);
    if (!owner || bytes.empty() || !GetArea::takeIfLast(buffer)) {
        return std::nullopt;
    }
    return StreamContent{bytes, std::move(owner)};
}

StreamContent copied(std::streambuf& buffer) {
    constexpr std::size_t kStep = 65536;
    const auto copy = std::make_shared<WipedText>();
    const std::streamsize known = buffer.in_avail();
    // One more than is there, so that the first read meets the end.
    std::size_t room = known > 0 ? static_cast<std::size_t>(known) + 1 : kStep;
    for (;;) {
        const std::size_t before = copy->size();
        char* const place = copy->extend(room);
        const auto count =
            static_cast<std::size_t>(buffer.sgetn(place, static_cast<std::streamsize>(room)));
        if (count < room) {
            copy->truncate(before + count);
            return {{copy->data(), copy->size()}, copy};
        }
        room = std::max(kStep, copy->size());
    }
}

}  // namespace

StreamContent contentOf(std::istream& stream) {
    if (!stream || stream.rdbuf() == nullptr) {
        throw Failure(NETWORK_NOT_READ, "The stream of the exported network can't be read");
    }
    std::streambuf& buffer = *stream.rdbuf();
    if (std::optional<StreamContent> content = shared(buffer)) {
        return *std::move(content);
    }
    return copied(buffer);
}

}  // namespace InferenceEngine::runtime
