// Which element types inputs and outputs may have.

#include "integration/model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;

class ElementTypes : public ModelTest {
protected:
    // Sets a feature for a network with one input "x", whatever the manifest declares.
    template <typename Value>
    void giveX(DataType type, const std::vector<Value>& values) {
        inputs_ = {featureOf<Value>("x", {1, static_cast<int64>(values.size())}, type, values)};
    }
};

// y = x / 2, so that a misread type cannot produce the expected numbers.
TEST_F(ElementTypes, FloatInputIsReadAsFloat) {
    ASSERT_THAT(loadNetwork(halvingNetwork("f32")), IsOk());
    giveX<float>(DataType::FLOAT, {1, -3, 1000, 0.5F});
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(0.5F, -1.5F, 500.F, 0.25F));
}

#ifdef QUAVIN_ENGINE_IS_ADAPTER  // others do not convert int8
TEST_F(ElementTypes, Int8InputIsReadAsInt8) {
    ASSERT_THAT(loadNetwork(halvingNetwork("i8")), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    ASSERT_EQ(inputs_.at(0)->asTensor()->dataType(), DataType::INT8);
    fill<std::int8_t>(inputs_.at(0), {1, -3, 127, -128});
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(0.5F, -1.5F, 63.5F, -64.F));
}
#endif

TEST_F(ElementTypes, Int16InputIsReadAsInt16) {
    ASSERT_THAT(loadNetwork(halvingNetwork("i16")), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    ASSERT_EQ(inputs_.at(0)->asTensor()->dataType(), DataType::INT16);
    fill<std::int16_t>(inputs_.at(0), {1, -3, 32767, -32768});
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(0.5F, -1.5F, 16383.5F, -16384.F));
}

TEST_F(ElementTypes, Int32InputIsReadAsInt32) {
    ASSERT_THAT(loadNetwork(halvingNetwork("i32")), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    ASSERT_EQ(inputs_.at(0)->asTensor()->dataType(), DataType::INT32);
    fill<std::int32_t>(inputs_.at(0), {1, -3, 1000000, -65536});
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(0.5F, -1.5F, 500000.F, -32768.F));
}

TEST_F(ElementTypes, Int32OutputIsReturnedAsInt32) {
    ASSERT_THAT(loadNetwork(integerNetwork()), IsOk());
    giveX<std::int32_t>(DataType::INT32, {1, -2, 100000, 0});
    ASSERT_THAT(predict(), IsOk());
    EXPECT_EQ(outputs_.at(0)->asTensor()->dataType(), DataType::INT32);
    EXPECT_THAT(valuesOf<std::int32_t>(outputs_.at(0)), ElementsAre(3, -6, 300000, 0));
}

#ifdef QUAVIN_ENGINE_IS_ADAPTER  // as above
TEST_F(ElementTypes, OneNetworkAcceptsAllFourTypesAtOnce) {
    IrNetwork net("all types");
    const IrNetwork::Shape shape = {1, 2};
    const auto real = net.input("real", shape, "f32");
    const auto byte = net.convert("byte/float", net.input("byte", shape, "i8"), "f32");
    const auto word = net.convert("word/float", net.input("word", shape, "i16"), "f32");
    const auto wide = net.convert("wide/float", net.input("wide", shape, "i32"), "f32");
    const auto small = net.layer("Add", "small", {real, byte}, shape);
    const auto large = net.layer("Add", "large", {word, wide}, shape);
    net.output(net.layer("Add", "total", {small, large}, shape));
    ASSERT_THAT(loadNetwork(net), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    fill<float>(named(inputs_, "real"), {0.25F, -0.5F});
    fill<std::int8_t>(named(inputs_, "byte"), {-1, 2});
    fill<std::int16_t>(named(inputs_, "word"), {300, -400});
    fill<std::int32_t>(named(inputs_, "wide"), {70000, 80000});
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(70299.25F, 79601.5F));
}
#endif

TEST_F(ElementTypes, FloatAndInt32OutputsComeFromOneNetwork) {
    IrNetwork net("two types");
    const auto x = net.input("x", {1, 2}, "i32");
    net.output(net.layer("Add", "doubled", {x, x}, {1, 2}));
    const auto real = net.convert("x/float", x, "f32");
    const auto half = net.constant<float>("half", {1, 1}, {0.5F});
    net.output(net.layer("Multiply", "halved", {real, half}, {1, 2}));
    ASSERT_THAT(loadNetwork(net), IsOk());
    giveX<std::int32_t>(DataType::INT32, {3, -5});
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<std::int32_t>(named(outputs_, "doubled")), ElementsAre(6, -10));
    EXPECT_THAT(valuesOf<float>(named(outputs_, "halved")), ElementsAre(1.5F, -2.5F));
}

TEST_F(ElementTypes, Uint8InputIsRefusedAsUnsupportedInputType) {
    ASSERT_THAT(loadNetwork(halvingNetwork("u8")), IsOk());
    giveX<std::uint8_t>(DataType::UINT8, {1, 2, 3, 4});
    expectThrows<InvalidTypeException>(
        [&] { predict(); }, INVALID_TYPE,
        "Openvino only supports float, int8, int16, int32 input datatypes");
}

TEST_F(ElementTypes, OtherUnsupportedTypesAreRefusedTheSameWay) {
    ASSERT_THAT(loadNetwork(sumNetwork()), IsOk());
    for (const DataType type : {DataType::UNDEFINED, DataType::UINT16, DataType::UINT32,
                                DataType::INT64, DataType::UINT64, DataType::FLOAT16,
                                static_cast<DataType>(13), static_cast<DataType>(-1)}) {
        inputs_ = {featureOver("x", {1, 2}, type,
                               std::make_shared<Tensor>(DataType::FLOAT, TensorShape{1, 2}))};
        expectThrows<InvalidTypeException>(
            [&] { predict(); }, INVALID_TYPE,
            "Openvino only supports float, int8, int16, int32 input datatypes");
    }
}

TEST_F(ElementTypes, BoolInputIsRefusedWithItsOwnText) {
    ASSERT_THAT(loadNetwork(sumNetwork()), IsOk());
    giveX<std::uint8_t>(DataType::BOOL, {1, 0});
    expectThrows<InvalidTensorDataTypeException>([&] { predict(); }, INVALID_TENSOR_DATA_TYPE,
                                                 "Bool type not supported in openvino engine");
}

TEST_F(ElementTypes, DoubleInputIsRefusedWithItsOwnText) {
    ASSERT_THAT(loadNetwork(sumNetwork()), IsOk());
    giveX<double>(DataType::DOUBLE, {1, 2});
    expectThrows<InvalidTensorDataTypeException>([&] { predict(); }, INVALID_TENSOR_DATA_TYPE,
                                                 "Double not supported in openvino engine");
}

TEST_F(ElementTypes, ASupportedTypeOtherThanTheLoadedOneIsAnEngineFailure) {
    ASSERT_THAT(loadNetwork(sumNetwork()), IsOk());
    giveX<std::int32_t>(DataType::INT32, {1, 2});
    expectThrows<MLFrameworkException>([&] { predict(); }, ML_FRAMEWORK_ERROR,
                                       "Unknown/internal exception happened.");
    EXPECT_TRUE(outputs_.empty());
}

TEST_F(ElementTypes, PredictionSucceedsAgainAfterARefusedType) {
    ASSERT_THAT(loadNetwork(sumNetwork()), IsOk());
    giveX<std::uint8_t>(DataType::UINT8, {1, 2, 3, 4, 5, 6, 7, 8});
    EXPECT_THROW(predict(), InvalidTypeException);
    giveX<std::int32_t>(DataType::INT32, {1, 2});
    EXPECT_THROW(predict(), MLFrameworkException);
    giveX<float>(DataType::FLOAT, {1, 2});
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.F, 4.F));
}

// Precisions are set on the network while predicting, so the next load of the same network uses
// them.
TEST_F(ElementTypes, LoadingAgainUsesTheTypeOfTheLastFeature) {
    ASSERT_THAT(loadNetwork(halvingNetwork("f32")), IsOk());
    giveX<std::int32_t>(DataType::INT32, {1, -3, 1000, 5});
    EXPECT_THROW(predict(), MLFrameworkException);
    ASSERT_THAT(model_->load(model_->getMetadata()), IsOk());
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(0.5F, -1.5F, 500.F, 2.5F));
}

TEST_F(ElementTypes, LoadingAgainAfterARefusedTypeRequiresUnloadingFirst) {
    ASSERT_THAT(loadNetwork(sumNetwork()), IsOk());
    giveX<std::uint8_t>(DataType::UINT8, {1, 2, 3, 4, 5, 6, 7, 8});
    EXPECT_THROW(predict(), InvalidTypeException);
    const auto metadata = model_->getMetadata();
    EXPECT_THROW(model_->load(metadata), std::exception);
    ASSERT_THAT(QuavinClient::instance().unloadModel(model_), IsOk());
    ASSERT_THAT(model_->load(metadata), IsOk());
    giveX<float>(DataType::FLOAT, {1, 2});
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.F, 4.F));
}

TEST_F(ElementTypes, InputWithoutDimensionsHasOneElement) {
    ASSERT_THAT(loadNetwork(scalarNetwork()), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    ASSERT_EQ(inputs_.at(0)->asTensor()->bytes(), 4);
    fill<float>(inputs_.at(0), {4.5F});
    ASSERT_THAT(predict(), IsOk());
    const auto output = outputs_.at(0)->asTensor();
    EXPECT_EQ(output->shape().dimension(), 0U);
    EXPECT_EQ(output->bytes(), 4);
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(45.F));
}

TEST_F(ElementTypes, InputWithoutDimensionsAcceptsATensorOfOneElement) {
    ASSERT_THAT(loadNetwork(scalarNetwork()), IsOk());
    inputs_ = {featureOf<float>("x", {1, 1}, DataType::FLOAT, {-2})};
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(-20.F));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
