#pragma once

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "platform/child_process.h"

namespace VelmoraQuavin::internal::platform {

/// What runInChild() does alike on all systems.

/// @throws std::runtime_error if a request is longer than kLargestChildRequest.
inline void requireShortRequest(std::string_view request) {
    if (request.size() > kLargestChildRequest) {
        throw std::runtime_error("The request to the child process is too long");
    }
}

/// Whether an answer is longer than any may be.
inline bool isEndless(std::string_view answer) {
    return answer.size() > kLargestChildAnswer;
}

/// Reads an answer to its end, or until it is endless.
/// @param readSome reads into a buffer of a given size; returns the number of bytes, 0 if there are
///        no more.
template <typename ReadSome>
std::string collectAnswer(const ReadSome& readSome) {
    std::string answer;
    std::array<char, 4096> chunk{};
    while (!isEndless(answer)) {
        const std::size_t count = readSome(chunk.data(), chunk.size());
        if (count == 0) {
            break;
        }
        answer.append(chunk.data(), count);
    }
    return answer;
}

/// The result of a process that has ended.
/// @param succeeded whether it ended with status 0.
/// @param end how it ended.
inline ChildResult resultOf(std::string answer, bool succeeded, std::string end) {
    if (isEndless(answer)) {
        return {"", "sent an endless answer"};
    }
    if (!succeeded || answer.empty()) {
        return {"", std::move(end)};
    }
    return {std::move(answer), ""};
}

}  // namespace VelmoraQuavin::internal::platform
