#include <gtest/gtest.h>

#include "quavin/status.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using testing::IsOk;
using testing::IsStatus;

TEST(StatusCodeTest, NumbersNeverChange) {
    EXPECT_EQ(SUCCESS, 1U);
    EXPECT_EQ(FAILURE, 2U);
    EXPECT_EQ(FILE_ERROR, 3U);
    EXPECT_EQ(INVALID_MODEL_PATH, 4U);
    EXPECT_EQ(INVALID_WEIGHTS_PATH, 5U);
    EXPECT_EQ(INVALID_OPERATION, 6U);
    EXPECT_EQ(INVALID_ARGUMENTS, 7U);
    EXPECT_EQ(INVALID_TYPE, 8U);
    EXPECT_EQ(INVALID_TENSOR_DATA_TYPE, 9U);
    EXPECT_EQ(MODEL_NOT_LOADED, 11U);
    EXPECT_EQ(MODEL_METADATA_ERROR, 12U);
    EXPECT_EQ(ML_FRAMEWORK_ERROR, 13U);
    EXPECT_EQ(OUT_OF_RANGE, 14U);
    EXPECT_EQ(NOT_INITIALIZED, 15U);
    EXPECT_EQ(MEMORY_LIMIT_EXCEEDED, 16U);
    EXPECT_EQ(TENSOR_SIZE_MISMATCH, 17U);
    EXPECT_EQ(ALLOCATION_FAILED, 18U);
    EXPECT_EQ(EMPTY_INPUT_DESCRIPTOR, 19U);
    EXPECT_EQ(TAR_CHECKSUM_MISMATCH, 21U);
    EXPECT_EQ(TAR_UNSUPPORTED_ENTRY, 22U);
}

TEST(StatusCodeTest, IsAnUnsigned32BitNumber) {
    EXPECT_EQ(sizeof(STATUS_CODE), 4U);
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<STATUS_CODE>, std::uint32_t>));
}

TEST(QuavinStatusTest, ADefaultStatusIsAFailureWithoutAText) {
    const QuavinStatus status;
    EXPECT_EQ(status.getCode(), FAILURE);
    EXPECT_TRUE(status.getDescription().empty());
    EXPECT_FALSE(status.ok());
}

TEST(QuavinStatusTest, OnlyCodeOneIsOk) {
    for (std::uint32_t code = 0; code <= 30; ++code) {
        EXPECT_EQ(QuavinStatus(static_cast<STATUS_CODE>(code), "").ok(), code == 1) << code;
    }
}

TEST(QuavinStatusTest, StoresCodeAndText) {
    EXPECT_THAT(QuavinStatus(OUT_OF_RANGE, "too far"), IsStatus(OUT_OF_RANGE, "too far"));
}

TEST(QuavinStatusTest, SetCodeKeepsTheText) {
    QuavinStatus status(FILE_ERROR, "a text");
    status.setCode(SUCCESS);
    EXPECT_THAT(status, IsStatus(SUCCESS, "a text"));
    EXPECT_TRUE(status.ok());
}

TEST(QuavinStatusTest, SetDescriptionKeepsTheCode) {
    QuavinStatus status(FILE_ERROR, "a text");
    status.setDescription("another");
    EXPECT_THAT(status, IsStatus(FILE_ERROR, "another"));
}

TEST(QuavinStatusTest, DescriptionIsACopy) {
    const QuavinStatus status(FILE_ERROR, "a text");
    String text = status.getDescription();
    text += " and more";
    EXPECT_EQ(status.getDescription(), "a text");
}

TEST(QuavinStatusTest, KeepsZeroBytesInItsText) {
    const String text("a\0b", 3);
    EXPECT_EQ(QuavinStatus(FAILURE, text).getDescription().size(), 3U);
}

TEST(QuavinStatusTest, CopiesAreIndependent) {
    const QuavinStatus original(FILE_ERROR, "a text");
    QuavinStatus copy = original;
    copy.setCode(SUCCESS);
    copy.setDescription("");
    EXPECT_THAT(copy, IsOk());
    EXPECT_THAT(original, IsStatus(FILE_ERROR, "a text"));
}

}  // namespace
}  // namespace VelmoraQuavin
