#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>

#include "quavin/metadata.h"

namespace VelmoraQuavin {
namespace {

std::uint64_t bits(QuavinModelType type) {
    return static_cast<std::uint64_t>(type);
}

void expectNoName(QuavinModelType type) {
    try {
        static_cast<void>(ModelTypeToName(type));
        ADD_FAILURE() << "nothing was thrown for " << bits(type);
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "invalid unordered_map<K, T> key");
    }
}

TEST(QuavinModelType, HasFixedBits) {
    EXPECT_EQ(bits(QuavinModelType::Undefined), 0u);
    EXPECT_EQ(bits(QuavinModelType::CoreML), 1u);
    EXPECT_EQ(bits(QuavinModelType::WinML), 2u);
    EXPECT_EQ(bits(QuavinModelType::Openvino), 4u);
    EXPECT_EQ(bits(QuavinModelType::Tensorflow), 8u);
    EXPECT_EQ(bits(QuavinModelType::TensorflowLite), 16u);
    EXPECT_EQ(bits(QuavinModelType::MockML), 32u);
}

TEST(QuavinModelType, CombinesWithOr) {
    constexpr QuavinModelType both = QuavinModelType::Openvino | QuavinModelType::MockML;
    EXPECT_EQ(bits(both), 36u);
    EXPECT_EQ(both | QuavinModelType::Openvino, both);
    EXPECT_EQ(both | QuavinModelType::Undefined, both);
}

TEST(QuavinModelType, IsExtractedWithAnd) {
    constexpr QuavinModelType both = QuavinModelType::Openvino | QuavinModelType::MockML;
    EXPECT_EQ(both & QuavinModelType::MockML, QuavinModelType::MockML);
    EXPECT_EQ(both & QuavinModelType::WinML, QuavinModelType::Undefined);
}

TEST(ModelTypeToName, ReturnsDisplayNames) {
    EXPECT_EQ(ModelTypeToName(QuavinModelType::Undefined), "Undefined");
    EXPECT_EQ(ModelTypeToName(QuavinModelType::CoreML), "CoreML");
    EXPECT_EQ(ModelTypeToName(QuavinModelType::WinML), "WinML");
    EXPECT_EQ(ModelTypeToName(QuavinModelType::Openvino), "OpenVino");
    EXPECT_EQ(ModelTypeToName(QuavinModelType::TensorflowLite), "TF-Lite");
    EXPECT_EQ(ModelTypeToName(QuavinModelType::MockML), "MOCK");
}

TEST(ModelTypeToName, ThrowsForTensorflow) {
    expectNoName(QuavinModelType::Tensorflow);
}

TEST(ModelTypeToName, ThrowsForCombinations) {
    expectNoName(QuavinModelType::Openvino | QuavinModelType::WinML);
    expectNoName(QuavinModelType::CoreML | QuavinModelType::WinML);
}

TEST(ModelTypeToName, ThrowsForUnknownNumbers) {
    expectNoName(static_cast<QuavinModelType>(64));
    expectNoName(static_cast<QuavinModelType>(~std::uint64_t{0}));
}

TEST(EngineKey, MatchesTheKeyInManifests) {
    EXPECT_EQ(EngineKey::WinML, "WinML");
    EXPECT_EQ(EngineKey::CoreML, "CoreML");
    EXPECT_EQ(EngineKey::Tensorflow, "Tensorflow");
    EXPECT_EQ(EngineKey::Openvino, "Openvino");
    EXPECT_EQ(EngineKey::TensorflowLite, "TensorflowLite");
    EXPECT_EQ(EngineKey::MockML, "MockML");
}

TEST(ComponentKind, MatchesTheNameInManifests) {
    EXPECT_EQ(ComponentKind::File, "file");
    EXPECT_EQ(ComponentKind::MemoryStream, "memory_stream");
    EXPECT_EQ(ComponentKind::SecuredFile, "secured_file");
    EXPECT_EQ(ComponentKind::SecuredTar, "secured_tar");
}

}  // namespace
}  // namespace VelmoraQuavin
