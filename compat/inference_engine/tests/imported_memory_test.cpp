// Who keeps the memory of an imported network, and for how long.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <istream>
#include <numeric>
#include <streambuf>
#include <utility>

#include "network_under_test.hpp"
#include "support/ir_text.h"

namespace InferenceEngine {
namespace {

using VelmoraQuavin::testing::IrText;

constexpr std::size_t kRows = 1000;
constexpr std::size_t kColumns = 256;

/** Looks a row up in a table, which the runtime uses as it is given. */
ExecutableNetwork lookup() {
    const std::string dims = std::to_string(kRows) + "," + std::to_string(kColumns);
    const std::string row = "1," + std::to_string(kColumns);
    const std::size_t bytes = kRows * kColumns * sizeof(float);
    const std::string text = IrText(11)
                                 .parameter(0, "x", "i32", "1", "x")
                                 .constant(1, "table", "f32", dims, 0, bytes)
                                 .constant(2, "axis", "i32", "", bytes, 4)
                                 .layer(3, "y", "Gather", "", "f32", {dims, "1", ""}, {{row, "y"}})
                                 .result(4, row)
                                 .edge(1, 0, 3, 0)
                                 .edge(0, 0, 3, 1)
                                 .edge(2, 0, 3, 2)
                                 .edge(3, 3, 4, 0)
                                 .str();
    std::vector<float> weights(kRows * kColumns + 1);  // the last one is the axis, 0
    std::iota(weights.begin(), weights.end() - 1, 0.0F);
    return Core().LoadNetwork(CNNNetwork(readNetwork(text, weightsOf(weights))), "CPU");
}

void expectRow(InferRequest& request, int row) {
    const Blob::Ptr output = floats({1, kColumns});
    request.SetBlob("x", blobOf<std::int32_t>(Precision::I32, {1}, {row}));
    request.SetBlob("y", output);
    request.Infer();
    std::vector<float> expected(kColumns);
    std::iota(expected.begin(), expected.end(), static_cast<float>(row) * kColumns);
    EXPECT_EQ(elementsOf<float>(output), expected);
}

/** Bytes that are overwritten with the buffer. */
class MemoryBuffer : public std::streambuf {
public:
    explicit MemoryBuffer(std::string bytes) : bytes_(std::move(bytes)) {
        setg(bytes_.data(), bytes_.data(), bytes_.data() + bytes_.size());
    }
    MemoryBuffer(const MemoryBuffer&) = delete;
    MemoryBuffer& operator=(const MemoryBuffer&) = delete;
    ~MemoryBuffer() override { scribble(); }

    void scribble() { std::fill(bytes_.begin(), bytes_.end(), 'x'); }

protected:
    std::streamsize showmanyc() override { return -1; }

private:
    std::string bytes_;
};

class SharedBuffer final : public MemoryBuffer,
                           public std::enable_shared_from_this<std::streambuf> {
    using MemoryBuffer::MemoryBuffer;
};

ExecutableNetwork importedFrom(std::streambuf& buffer) {
    std::istream stream(&buffer);
    return Core().ImportNetwork(stream, "CPU");
}

TEST(ImportedMemoryTest, IsACopyIfItsBufferCannotBeKept) {
    MemoryBuffer buffer(exported(lookup()));
    ExecutableNetwork network = importedFrom(buffer);
    buffer.scribble();
    const auto request = network.CreateInferRequestPtr();
    expectRow(*request, 7);
    expectRow(*request, 999);
}

TEST(ImportedMemoryTest, IsACopyIfTheBufferIsNotOwnedByASharedPointer) {
    SharedBuffer buffer(exported(lookup()));
    ExecutableNetwork network = importedFrom(buffer);
    buffer.scribble();
    expectRow(*network.CreateInferRequestPtr(), 7);
}

TEST(ImportedMemoryTest, IsTheBuffersIfItCanBeKept) {
    auto buffer = std::make_shared<SharedBuffer>(exported(lookup()));
    const std::weak_ptr<SharedBuffer> watched = buffer;
    {
        ExecutableNetwork network = importedFrom(*buffer);
        buffer.reset();
        EXPECT_FALSE(watched.expired());
        expectRow(*network.CreateInferRequestPtr(), 7);
    }
    EXPECT_TRUE(watched.expired());
}

TEST(ImportedMemoryTest, LivesAsLongAsTheLastOfSeveralRequests) {
    auto buffer = std::make_shared<SharedBuffer>(exported(lookup()));
    const std::weak_ptr<SharedBuffer> watched = buffer;
    InferRequest::Ptr first;
    InferRequest::Ptr second;
    {
        ExecutableNetwork network = importedFrom(*buffer);
        buffer.reset();
        first = network.CreateInferRequestPtr();
        second = network.CreateInferRequestPtr();
    }
    first.reset();
    EXPECT_FALSE(watched.expired());
    expectRow(*second, 7);
    expectRow(*second, 500);
    second.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(ImportedMemoryTest, IsLetGoOfIfImportingFails) {
    auto buffer = std::make_shared<SharedBuffer>("not an exported network");
    const std::weak_ptr<SharedBuffer> watched = buffer;
    EXPECT_THROW(importedFrom(*buffer), NetworkNotRead);
    buffer.reset();
    EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace InferenceEngine
