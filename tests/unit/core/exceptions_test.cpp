#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

#include "quavin/status.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using testing::IsStatus;

template <typename ExceptionClass, STATUS_CODE fixedCode>
struct Fixed {
    using Class = ExceptionClass;
    static constexpr STATUS_CODE code = fixedCode;
};

using FixedCodes = ::testing::Types<
    Fixed<FileException, FILE_ERROR>, Fixed<InvalidOperationException, INVALID_OPERATION>,
    Fixed<InvalidArgumentsException, INVALID_ARGUMENTS>, Fixed<InvalidTypeException, INVALID_TYPE>,
    Fixed<InvalidTensorDataTypeException, INVALID_TENSOR_DATA_TYPE>,
    Fixed<ModelMetaDataException, MODEL_METADATA_ERROR>,
    Fixed<MLFrameworkException, ML_FRAMEWORK_ERROR>, Fixed<RangeException, OUT_OF_RANGE>>;

template <typename Class>
constexpr int countBasesInFamily() {
    return std::is_base_of_v<Exception, Class> + std::is_base_of_v<FileException, Class> +
           std::is_base_of_v<InvalidOperationException, Class> +
           std::is_base_of_v<InvalidArgumentsException, Class> +
           std::is_base_of_v<InvalidTypeException, Class> +
           std::is_base_of_v<InvalidTensorDataTypeException, Class> +
           std::is_base_of_v<ModelMetaDataException, Class> +
           std::is_base_of_v<MLFrameworkException, Class> +
           std::is_base_of_v<RangeException, Class>;
}

template <typename FixedCode>
class ExceptionFamilyTest : public ::testing::Test {
protected:
    using Class = typename FixedCode::Class;
};
// Before C++20, a variadic macro needs an argument for its "...", though it may be empty.
TYPED_TEST_SUITE(ExceptionFamilyTest, FixedCodes, );

TYPED_TEST(ExceptionFamilyTest, CarriesItsCodeAndMessage) {
    const typename TestFixture::Class exception("a message");
    EXPECT_EQ(exception.getStatusCode(), TypeParam::code);
    EXPECT_STREQ(exception.what(), "a message");
}

TYPED_TEST(ExceptionFamilyTest, DerivesDirectlyFromException) {
    EXPECT_EQ(countBasesInFamily<typename TestFixture::Class>(), 2);  // Exception and itself
    EXPECT_TRUE(std::has_virtual_destructor_v<typename TestFixture::Class>);
}

TYPED_TEST(ExceptionFamilyTest, IsCaughtAsExceptionWithItsOwnClass) {
    testing::expectThrows<typename TestFixture::Class>(
        [] { throw typename TestFixture::Class("thrown"); }, TypeParam::code, "thrown");
}

TYPED_TEST(ExceptionFamilyTest, CopiesMessageAndCode) {
    auto original = std::make_unique<typename TestFixture::Class>("a message");
    const typename TestFixture::Class copy(*original);
    original.reset();
    EXPECT_EQ(copy.getStatusCode(), TypeParam::code);
    EXPECT_STREQ(copy.what(), "a message");
}

TYPED_TEST(ExceptionFamilyTest, ConvertsToAStatusWithItsCode) {
    try {
        throw typename TestFixture::Class("a message");
    } catch (...) {
        EXPECT_THAT(getStatusFromCurrentException(), IsStatus(TypeParam::code, "a message"));
    }
}

TEST(ExceptionTest, TheCodeDefaultsToFailure) {
    EXPECT_EQ(Exception("a message").getStatusCode(), FAILURE);
    EXPECT_STREQ(Exception("a message").what(), "a message");
}

TEST(ExceptionTest, ReportsTheCodeItWasGiven) {
    EXPECT_EQ(Exception("a message", ML_FRAMEWORK_ERROR).getStatusCode(), 13U);
    EXPECT_EQ(Exception("a message", static_cast<STATUS_CODE>(0)).getStatusCode(), 0U);
}

TEST(ExceptionTest, IsCaughtAsAStandardException) {
    try {
        throw Exception("a message");
    } catch (const std::exception& exception) {
        EXPECT_STREQ(exception.what(), "a message");
    }
}

TEST(ExceptionTest, WhatEndsAtTheFirstZeroByteOfTheMessage) {
    EXPECT_STREQ(Exception(String("before\0after", 12)).what(), "before");
}

TEST(ExceptionTest, KeepsACopyOfTheText) {
    String text = "a message";
    const Exception exception(text);
    text.clear();
    EXPECT_STREQ(exception.what(), "a message");
}

}  // namespace
}  // namespace VelmoraQuavin
