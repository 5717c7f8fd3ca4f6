// What is left in a stream, as one block of memory.
#pragma once

#include <iosfwd>
#include <memory>
#include <string_view>

namespace InferenceEngine::runtime {

struct StreamContent {
    std::string_view bytes;
    std::shared_ptr<const void> owner;  // keeps the bytes alive
};

/**
 * Takes the rest of a stream without copying, if it is in the get area of a buffer that can be
 * kept alive (see Core::ImportNetwork). Anything else is copied; the copy is wiped when its last
 * owner lets go of it.
 *
 * @throws Failure if the stream has failed
 */
StreamContent contentOf(std::istream& stream);

}  // namespace InferenceEngine::runtime
