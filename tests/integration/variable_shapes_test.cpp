// Inputs whose manifest leaves a dimension open.

#include "integration/model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;

constexpr const char* kVariable =
    "Attempting to infer a tensor shape from a variable-shaped tensor.";

class VariableShapes : public ModelTest {
protected:
    // The arithmetic network, with its inputs declared as given.
    QuavinStatus loadWith(const IrNetwork::Shape& left, const IrNetwork::Shape& right) {
        const IrNetwork network = arithmeticNetwork();
        writeNetwork(directory_, network);
        PackageText text = describe(network);
        text.inputs = {tensorFeature("left", left, "float"),
                       tensorFeature("right", right, "float")};
        writeManifest(directory_, text);
        return load();
    }
};

TEST_F(VariableShapes, AVariableFirstInputMakesLoadingAnswer6) {
    EXPECT_THAT(loadWith({1, -1}, {1, 2}), IsStatus(INVALID_OPERATION, kVariable));
}

TEST_F(VariableShapes, AVariableLaterInputLoadsAndAllocatesATensorWithoutMemory) {
    ASSERT_THAT(loadWith({1, 2}, {1, -1}), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    const auto tensor = named(inputs_, "right")->asTensor();
    EXPECT_EQ(tensor->buffer(), nullptr);
    EXPECT_EQ(tensor->shape().dimension(), 0U);
    EXPECT_EQ(tensor->dataType(), DataType::FLOAT);
}

TEST_F(VariableShapes, AVariableLaterInputMakesPredictThrowEvenAfterResizing) {
    ASSERT_THAT(loadWith({1, 2}, {1, -1}), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    expectThrows<InvalidOperationException>([&] { predict(); }, INVALID_OPERATION, kVariable);
    // The descriptor decides, not the tensor.
    ASSERT_THAT(named(inputs_, "right")->asTensor()->resize({1, 2}), IsOk());
    expectThrows<InvalidOperationException>([&] { predict(); }, INVALID_OPERATION, kVariable);
    EXPECT_TRUE(outputs_.empty());
}

TEST_F(VariableShapes, PredictAcceptsAHostsFeatureWithAConcreteDescriptor) {
    ASSERT_THAT(loadWith({1, 2}, {1, -1}), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    fill<float>(named(inputs_, "left"), {5, 7});
    inputs_.at(1) = featureOf<float>("right", {1, 2}, DataType::FLOAT, {2, 3});
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<float>(named(outputs_, "difference")), ElementsAre(3.F, 4.F));
}

TEST_F(VariableShapes, AMissingEarlierInputIsReportedFirst) {
    ASSERT_THAT(loadWith({1, 2}, {1, -1}), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    // "left" comes first in name order, so the host is told about that.
    inputs_ = {named(inputs_, "right")};
    EXPECT_THAT(predict(), IsStatus(EMPTY_INPUT_DESCRIPTOR, "Empty Input Feature Descriptor"));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
