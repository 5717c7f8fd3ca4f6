#include <gtest/gtest.h>

#include <inference_engine.hpp>

namespace InferenceEngine {
namespace {

TEST(TensorDescTest, StoresItsArguments) {
    TensorDesc desc(Precision::FP32, {1, 3, 224, 224}, NCHW);
    EXPECT_EQ(desc.getDims(), (SizeVector{1, 3, 224, 224}));
    EXPECT_EQ(desc.getLayout(), NCHW);
    EXPECT_TRUE(desc.getPrecision() == Precision::FP32);
    desc.setPrecision(Precision::I8);
    EXPECT_TRUE(desc.getPrecision() == Precision::I8);
}

TEST(TensorDescTest, DefaultLayoutDependsOnTheRank) {
    EXPECT_EQ(TensorDesc::getLayoutByDims({}), SCALAR);
    EXPECT_EQ(TensorDesc::getLayoutByDims({2}), C);
    EXPECT_EQ(TensorDesc::getLayoutByDims({2, 2}), NC);
    EXPECT_EQ(TensorDesc::getLayoutByDims({2, 2, 2}), CHW);
    EXPECT_EQ(TensorDesc::getLayoutByDims({2, 2, 2, 2}), NCHW);
    EXPECT_EQ(TensorDesc::getLayoutByDims({2, 2, 2, 2, 2}), NCDHW);
    EXPECT_EQ(TensorDesc::getLayoutByDims({2, 2, 2, 2, 2, 2}), BLOCKED);
}

TEST(TensorDescTest, ThrowsForALayoutOfTheWrongRank) {
    EXPECT_THROW(TensorDesc(Precision::FP32, {1}, SCALAR), details::InferenceEngineException);
    EXPECT_THROW(TensorDesc(Precision::FP32, {}, C), details::InferenceEngineException);
    for (const Layout layout : {HW, NC, CN}) {
        EXPECT_THROW(TensorDesc(Precision::FP32, {1}, layout), details::InferenceEngineException);
        EXPECT_NO_THROW(TensorDesc(Precision::FP32, {1, 2}, layout));
    }
    EXPECT_THROW(TensorDesc(Precision::FP32, {1, 2}, CHW), details::InferenceEngineException);
    for (const Layout layout : {NCHW, NHWC, OIHW}) {
        EXPECT_THROW(TensorDesc(Precision::FP32, {1, 2, 3}, layout),
                     details::InferenceEngineException);
        EXPECT_NO_THROW(TensorDesc(Precision::FP32, {1, 2, 3, 4}, layout));
    }
    for (const Layout layout : {NCDHW, NDHWC}) {
        EXPECT_THROW(TensorDesc(Precision::FP32, {1, 2, 3, 4}, layout),
                     details::InferenceEngineException);
        EXPECT_NO_THROW(TensorDesc(Precision::FP32, {1, 2, 3, 4, 5}, layout));
    }
}

TEST(TensorDescTest, AnyAndBlockedFitEveryRank) {
    for (const SizeVector& dims : {SizeVector{}, SizeVector{1}, SizeVector{1, 2, 3, 4, 5, 6}}) {
        EXPECT_NO_THROW(TensorDesc(Precision::U8, dims, ANY));
        EXPECT_NO_THROW(TensorDesc(Precision::U8, dims, BLOCKED));
    }
}

}  // namespace
}  // namespace InferenceEngine
