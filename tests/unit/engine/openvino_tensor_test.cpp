#include "engine/openvino/openvino_tensor.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <memory>
#include <utility>

#include "support/status_matcher.h"

namespace VelmoraQuavin::testing {
namespace {

using InferenceEngine::Blob;
using InferenceEngine::Layout;
using InferenceEngine::Precision;
using InferenceEngine::SizeVector;
using InferenceEngine::TensorDesc;

template <typename Element>
Blob::Ptr allocatedBlob(Precision precision, const SizeVector& dims, Layout layout) {
    // Not make_shared_blob, which refuses precisions that Element does not match.
    auto blob =
        std::make_shared<InferenceEngine::TBlob<Element>>(TensorDesc(precision, dims, layout));
    blob->allocate();
    return blob;
}

Blob::Ptr fourFloats() {
    return allocatedBlob<float>(Precision::FP32, {1, 4}, InferenceEngine::NC);
}

TEST(OpenVinoTensor, ReportsTypeShapeAndBytesOfAFloatBlob) {
    const auto tensor = std::make_shared<OpenVinoTensor>(
        allocatedBlob<float>(Precision::FP32, {1, 3, 224, 224}, InferenceEngine::NCHW));
    EXPECT_EQ(tensor->dataType(), DataType::FLOAT);
    EXPECT_EQ(tensor->shape().shapeVector(), (std::vector<int64>{1, 3, 224, 224}));
    EXPECT_EQ(tensor->bytes(), 602112);
}

TEST(OpenVinoTensor, ReportsTheDataTypeOfEachSupportedPrecision) {
    const SizeVector dims = {2, 3};
    const auto typeOf = [](Blob::Ptr blob) { return OpenVinoTensor(std::move(blob)).dataType(); };
    EXPECT_EQ(typeOf(allocatedBlob<float>(Precision::FP32, dims, InferenceEngine::NC)),
              DataType::FLOAT);
    EXPECT_EQ(typeOf(allocatedBlob<std::int8_t>(Precision::I8, dims, InferenceEngine::NC)),
              DataType::INT8);
    EXPECT_EQ(typeOf(allocatedBlob<std::int16_t>(Precision::I16, dims, InferenceEngine::NC)),
              DataType::INT16);
    EXPECT_EQ(typeOf(allocatedBlob<std::int32_t>(Precision::I32, dims, InferenceEngine::NC)),
              DataType::INT32);
}

TEST(OpenVinoTensor, AU8OrFp16BlobHasNoDataTypeButExposesItsMemory) {
    const auto bytes = allocatedBlob<std::uint8_t>(Precision::U8, {4}, InferenceEngine::C);
    const auto halves = allocatedBlob<std::int16_t>(Precision::FP16, {4}, InferenceEngine::C);
    for (const Blob::Ptr& blob : {bytes, halves}) {
        const auto tensor = std::make_shared<OpenVinoTensor>(blob);
        EXPECT_EQ(tensor->dataType(), DataType::UNDEFINED);
        EXPECT_EQ(tensor->shape().shapeVector(), (std::vector<int64>{4}));
        EXPECT_EQ(tensor->bytes(), 0);
        EXPECT_NE(tensor->buffer(), nullptr);
        EXPECT_EQ(tensor->buffer(), blob->buffer().as<unsigned char*>());
    }
}

TEST(OpenVinoTensor, UsesTheDimensionsUnchangedWhateverTheLayout) {
    for (const Layout layout :
         {InferenceEngine::NCHW, InferenceEngine::NHWC, InferenceEngine::ANY}) {
        const auto tensor = std::make_shared<OpenVinoTensor>(
            allocatedBlob<float>(Precision::FP32, {1, 2, 3, 4}, layout));
        EXPECT_EQ(tensor->shape().shapeVector(), (std::vector<int64>{1, 2, 3, 4}));
        EXPECT_EQ(tensor->stride().shapeVector(), (std::vector<int64>{24, 12, 4, 1}));
    }
}

TEST(OpenVinoTensor, ABlobWithoutDimensionsHasOneElement) {
    const auto tensor = std::make_shared<OpenVinoTensor>(
        allocatedBlob<float>(Precision::FP32, {}, InferenceEngine::SCALAR));
    EXPECT_EQ(tensor->shape().dimension(), 0U);
    EXPECT_EQ(tensor->bytes(), 4);
    EXPECT_NE(tensor->buffer(), nullptr);
}

TEST(OpenVinoTensor, ResizeIsRefusedForAnyShapeAndChangesNothing) {
    const auto tensor = std::make_shared<OpenVinoTensor>(fourFloats());
    const unsigned char* const address = tensor->buffer();
    tensor->buffer()[5] = 77;
    for (const TensorShape& shape :
         {TensorShape{1, 4}, TensorShape{4}, TensorShape{}, TensorShape{9, 9}}) {
        EXPECT_THAT(tensor->resize(shape), IsStatus(FAILURE, "Tensor resizing not allowed"));
    }
    EXPECT_EQ(tensor->shape().shapeVector(), (std::vector<int64>{1, 4}));
    EXPECT_EQ(tensor->buffer(), address);
    EXPECT_EQ(tensor->buffer()[5], 77);
}

TEST(OpenVinoTensor, AllocateReturnsFalseAndChangesNothing) {
    const auto tensor = std::make_shared<OpenVinoTensor>(fourFloats());
    const unsigned char* const address = tensor->buffer();
    EXPECT_FALSE(tensor->allocate(16));
    EXPECT_FALSE(tensor->allocate(0));
    EXPECT_EQ(tensor->buffer(), address);
    const auto without =
        std::make_shared<OpenVinoTensor>(std::make_shared<InferenceEngine::TBlob<float>>(
            TensorDesc(Precision::FP32, {1, 4}, InferenceEngine::NC)));
    EXPECT_FALSE(without->allocate(16));
    EXPECT_EQ(without->buffer(), nullptr);
}

TEST(OpenVinoTensor, BothBufferOverloadsReturnTheBlobsMemory) {
    const Blob::Ptr blob = fourFloats();
    const auto tensor = std::make_shared<OpenVinoTensor>(blob);
    EXPECT_EQ(tensor->buffer(), std::as_const(*tensor).buffer());
    EXPECT_EQ(tensor->buffer(), blob->buffer().as<unsigned char*>());
    reinterpret_cast<float*>(tensor->buffer())[2] = 1.5F;
    EXPECT_EQ(blob->cbuffer().as<const float*>()[2], 1.5F);
}

TEST(OpenVinoTensor, ABlobWithoutMemoryHasANullBuffer) {
    const auto tensor =
        std::make_shared<OpenVinoTensor>(std::make_shared<InferenceEngine::TBlob<float>>(
            TensorDesc(Precision::FP32, {1, 4}, InferenceEngine::NC)));
    EXPECT_EQ(tensor->buffer(), nullptr);
    EXPECT_EQ(std::as_const(*tensor).buffer(), nullptr);
    EXPECT_EQ(tensor->bytes(), 16);
}

TEST(OpenVinoTensor, KeepsItsBlobAliveUntilDestroyed) {
    Blob::Ptr blob = fourFloats();
    blob->buffer().as<float*>()[3] = 2.5F;
    const std::weak_ptr<Blob> observed = blob;
    auto tensor = std::make_shared<OpenVinoTensor>(std::move(blob));
    ASSERT_FALSE(observed.expired());
    EXPECT_EQ(reinterpret_cast<const float*>(tensor->buffer())[3], 2.5F);
    tensor.reset();
    EXPECT_TRUE(observed.expired());
}

TEST(OpenVinoTensor, SupportsSharedFromThis) {
    const auto tensor = std::make_shared<OpenVinoTensor>(fourFloats());
    EXPECT_EQ(tensor->shared_from_this(), tensor);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
