// Input features that predict() refuses because the engine could not read them in place.

#include "integration/model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

// A view of every second element.
class StridedTensor : public Tensor {
public:
    using Tensor::Tensor;
    TensorShape stride() const override { return {8, 2}; }
};

// A tensor that only wraps the given memory.
std::shared_ptr<ITensor> overMemory(const TensorShape& shape, float* memory, std::size_t bytes) {
    return std::make_shared<BufferWrappedTensor>(DataType::FLOAT, shape,
                                                 reinterpret_cast<unsigned char*>(memory), bytes);
}

// The network reads four floats, 16 bytes.
class InputRefusals : public ModelTest {
protected:
    InputRefusals() { EXPECT_THAT(loadNetwork(affineNetwork()), IsOk()); }

    void give(std::shared_ptr<ITensor> tensor) {
        inputs_ = {featureOver("x", {1, 4}, DataType::FLOAT, std::move(tensor))};
    }
    void expectTooSmall(const std::string& given) {
        try {
            predict();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const InvalidArgumentsException& exception) {
            EXPECT_EQ(exception.getStatusCode(), INVALID_ARGUMENTS);
            EXPECT_THAT(exception.what(),
                        AllOf(HasSubstr("\"x\""), HasSubstr("16"), HasSubstr(given)));
        }
        EXPECT_TRUE(outputs_.empty());
    }
};

TEST_F(InputRefusals, AStridedTensorIsRefused) {
    give(std::make_shared<StridedTensor>(DataType::FLOAT, TensorShape{1, 4}));
    expectThrows<MLFrameworkException>([&] { predict(); }, ML_FRAMEWORK_ERROR,
                                       "OpenVino: Invalid use of strided tensor");
    EXPECT_TRUE(outputs_.empty());
}

TEST_F(InputRefusals, AScalarFeatureWithAnInputsNameIsRefused) {
    inputs_ = {std::make_shared<QuavinFeatureDouble>(
        ModelFeatureDescriptor(QuavinFeatureType::DOUBLE, true, "x", "",
                               TensorDescriptor({1, 4}, DataType::FLOAT), ImageDescriptor()),
        1.5)};
    expectThrows<InvalidTypeException>(
        [&] { predict(); }, INVALID_TYPE,
        "Attempt to interpret a feature as tensor while the feature's type is double");
}

TEST_F(InputRefusals, AScalarInputDeclaredByTheManifestIsRefusedToo) {
    PackageText text = describe(affineNetwork());
    text.inputs = {scalarFeature("x", "int64")};
    writeManifest(directory_, text);
    ASSERT_THAT(load(), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    ASSERT_EQ(inputs_.at(0)->type(), QuavinFeatureType::INT64);
    // Without an element type the descriptor maps to none that the engine accepts, but the feature
    // is asked for its tensor first.
    expectThrows<InvalidTypeException>(
        [&] { predict(); }, INVALID_TYPE,
        "Attempt to interpret a feature as tensor while the feature's type is int64");
}

TEST_F(InputRefusals, AFeatureWithoutATensorIsRefusedNamingInputAndBytes) {
    give(nullptr);
    expectTooSmall("given 0");
}

TEST_F(InputRefusals, ATensorWithoutMemoryIsRefusedNamingInputAndBytes) {
    give(std::make_shared<Tensor>(DataType::FLOAT));
    expectTooSmall("given 0");
    give(overMemory({1, 4}, nullptr, 0));
    expectTooSmall("given 0");
}

TEST_F(InputRefusals, ATensorOfFewerBytesIsRefusedNamingInputAndBytes) {
    give(std::make_shared<Tensor>(DataType::FLOAT, TensorShape{1, 3}));
    expectTooSmall("given 12");
    give(std::make_shared<Tensor>(DataType::INT8, TensorShape{1, 15}));
    expectTooSmall("given 15");
    give(std::make_shared<Tensor>(DataType::FLOAT, TensorShape{0}));
    expectTooSmall("given 0");
}

TEST_F(InputRefusals, ATensorWithoutAnElementTypeHasNoBytes) {
    float memory[4] = {};
    give(std::make_shared<BufferWrappedTensor>(DataType::UNDEFINED, TensorShape{1, 4},
                                               reinterpret_cast<unsigned char*>(memory), 0));
    expectTooSmall("given 0");
}

TEST_F(InputRefusals, TheEnginesOwnInputChecksComeFirst) {
    // No memory, and a type for which the engine has its own text.
    inputs_ = {featureOver("x", {1, 4}, DataType::UINT8, nullptr)};
    expectThrows<InvalidTypeException>(
        [&] { predict(); }, INVALID_TYPE,
        "Openvino only supports float, int8, int16, int32 input datatypes");
    inputs_ = {featureOver("x", {1, 4}, DataType::BOOL, nullptr)};
    EXPECT_THROW(predict(), InvalidTensorDataTypeException);
    inputs_ = {featureOver("x", {-1, 4}, DataType::FLOAT, nullptr)};
    EXPECT_THROW(predict(), InvalidOperationException);
    // Too small, and strided.
    give(std::make_shared<StridedTensor>(DataType::FLOAT, TensorShape{1, 2}));
    EXPECT_THROW(predict(), MLFrameworkException);
}

TEST_F(InputRefusals, ADifferentShapeWithTheSameBytesIsBoundUnchanged) {
    for (const TensorShape& shape :
         {TensorShape{4}, TensorShape{4, 1}, TensorShape{2, 2}, TensorShape{1, 1, 1, 2, 2}}) {
        inputs_ = {featureOf<float>("x", shape, DataType::FLOAT, {1, 2, 3, -4})};
        ASSERT_THAT(predict(), IsOk());
        EXPECT_EQ(outputs_.at(0)->asTensor()->shape().shapeVector(), (std::vector<int64>{1, 4}));
        EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
    }
}

TEST_F(InputRefusals, ADifferentShapeWithMoreBytesIsBoundUnchanged) {
    inputs_ = {featureOf<float>("x", {3, 3}, DataType::FLOAT, {1, 2, 3, -4, 9, 9, 9, 9, 9})};
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
}

TEST_F(InputRefusals, PredictionSucceedsAgainAfterARefusal) {
    give(std::make_shared<StridedTensor>(DataType::FLOAT, TensorShape{1, 4}));
    EXPECT_THROW(predict(), MLFrameworkException);
    give(nullptr);
    EXPECT_THROW(predict(), InvalidArgumentsException);
    ASSERT_THAT(allocateInputs(), IsOk());
    EXPECT_THAT(predictFloats({1, 2, 3, -4}), ElementsAre(2.5F, 5.F, 7.5F, -6.F));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
