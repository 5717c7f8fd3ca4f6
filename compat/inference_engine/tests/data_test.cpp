#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <inference_engine.hpp>

namespace InferenceEngine {
namespace {

using testing::StrEq;
using testing::ThrowsMessage;

TEST(DataTest, ReportsItsDescription) {
    Data data("probabilities", TensorDesc(Precision::FP32, {1, 10}, NC));
    EXPECT_EQ(data.getName(), "probabilities");
    EXPECT_EQ(data.getDims(), (SizeVector{1, 10}));
    EXPECT_EQ(data.getLayout(), NC);
    data.setPrecision(Precision::I32);
    EXPECT_TRUE(data.getPrecision() == Precision::I32);
    EXPECT_TRUE(data.getTensorDesc().getPrecision() == Precision::I32);
}

TEST(InputInfoTest, ForwardsToItsData) {
    const auto data =
        std::make_shared<Data>("image", TensorDesc(Precision::FP32, {1, 3, 2, 2}, NCHW));
    InputInfo info;
    info.setInputData(data);
    EXPECT_EQ(info.name(), "image");
    EXPECT_EQ(info.getInputData(), data);
    EXPECT_EQ(info.getLayout(), NCHW);
    info.setPrecision(Precision::I8);
    EXPECT_TRUE(data->getPrecision() == Precision::I8);
    EXPECT_TRUE(info.getPrecision() == Precision::I8);
    EXPECT_EQ(info.getTensorDesc().getDims(), (SizeVector{1, 3, 2, 2}));
}

TEST(InputInfoTest, WithoutDataEveryAccessorThrows) {
    InputInfo info;
    const auto throwsDataIsEmpty =
        ThrowsMessage<details::InferenceEngineException>(StrEq("Data is empty!"));
    EXPECT_THAT([&] { info.name(); }, throwsDataIsEmpty);
    EXPECT_THAT([&] { info.getTensorDesc(); }, throwsDataIsEmpty);
    EXPECT_THAT([&] { info.getPrecision(); }, throwsDataIsEmpty);
    EXPECT_THAT([&] { info.setPrecision(Precision::FP32); }, throwsDataIsEmpty);
    EXPECT_THAT([&] { info.getLayout(); }, throwsDataIsEmpty);
}

}  // namespace
}  // namespace InferenceEngine
