// The rest of a stream as one block of memory.
#include "stream_content.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>
#include <streambuf>
#include <utility>

#include "failure.hpp"
#include "support/temp_directory.h"

namespace InferenceEngine::runtime {
namespace {

using testing::IsEmpty;
using VelmoraQuavin::testing::TempDirectory;

std::string longText() {
    std::string text;
    for (int i = 0; text.size() < 300000; ++i) {
        text += std::to_string(i);
    }
    return text;
}

/** Gives a text in pieces and does not say how much is left. */
class PieceBuffer : public std::streambuf {
public:
    PieceBuffer(std::string text, std::size_t size) : text_(std::move(text)), size_(size) {}

protected:
    int_type underflow() override {
        const std::size_t count = text_.copy(piece_.data(), std::min(size_, piece_.size()), next_);
        next_ += count;
        setg(piece_.data(), piece_.data(), piece_.data() + count);
        return count == 0 ? traits_type::eof() : traits_type::to_int_type(piece_[0]);
    }

private:
    std::string text_;
    std::size_t size_;
    std::size_t next_ = 0;
    std::array<char, 1000> piece_{};
};

class SharedPieceBuffer final : public PieceBuffer,
                                public std::enable_shared_from_this<std::streambuf> {
    using PieceBuffer::PieceBuffer;
};

TEST(StreamContentTest, IsWhatIsLeft) {
    std::istringstream stream("read already,not yet");
    stream.ignore(13);
    EXPECT_EQ(contentOf(stream).bytes, "not yet");
    EXPECT_THAT(contentOf(stream).bytes, IsEmpty());
}

TEST(StreamContentTest, OfAFileIsAllOfIt) {
    const TempDirectory directory;
    directory.write("text", longText());
    std::ifstream stream(directory.path() / "text", std::ios::binary);
    EXPECT_EQ(contentOf(stream).bytes, longText());
    stream.clear();
    stream.seekg(10);
    stream.get();
    EXPECT_EQ(contentOf(stream).bytes, longText().substr(11));
}

TEST(StreamContentTest, ArrivesInPiecesOfAnySize) {
    for (const std::size_t size : {1U, 999U, 1000U}) {
        PieceBuffer buffer(longText(), size);
        std::istream stream(&buffer);
        EXPECT_EQ(contentOf(stream).bytes, longText());
    }
}

TEST(StreamContentTest, IsNotOnlyThePieceInTheGetArea) {
    const auto buffer = std::make_shared<SharedPieceBuffer>(longText(), 1000);
    std::istream stream(buffer.get());
    EXPECT_EQ(stream.get(), longText()[0]);
    EXPECT_EQ(contentOf(stream).bytes, longText().substr(1));
    EXPECT_EQ(buffer.use_count(), 1);
}

TEST(StreamContentTest, StaysWhereItIsIfTheBufferCanBeKept) {
    class LastPieceBuffer final : public std::streambuf,
                                  public std::enable_shared_from_this<std::streambuf> {
    public:
        explicit LastPieceBuffer(std::string& text) {
            setg(text.data(), text.data(), text.data() + text.size());
        }

    protected:
        std::streamsize showmanyc() override { return -1; }
    };
    std::string text = "read already,not yet";
    const auto buffer = std::make_shared<LastPieceBuffer>(text);
    std::istream stream(buffer.get());
    stream.ignore(13);
    const StreamContent content = contentOf(stream);
    EXPECT_EQ(content.bytes, "not yet");
    EXPECT_EQ(static_cast<const void*>(content.bytes.data()), text.data() + 13);
    EXPECT_EQ(content.owner, buffer);
    EXPECT_EQ(stream.get(), std::istream::traits_type::eof());
}

TEST(StreamContentTest, OfAFailedStreamIsRefused) {
    std::istringstream stream("text");
    stream.setstate(std::ios::failbit);
    EXPECT_THROW(contentOf(stream), Failure);
    std::istream none(nullptr);
    none.clear(std::ios::goodbit);
    EXPECT_THROW(contentOf(none), Failure);
}

}  // namespace
}  // namespace InferenceEngine::runtime
