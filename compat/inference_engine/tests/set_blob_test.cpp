// What SetBlob accepts and refuses.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "network_texts.hpp"
#include "network_under_test.hpp"
#include "support/ir_text.h"

namespace InferenceEngine {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;
using VelmoraQuavin::testing::IrText;

class SetBlobTest : public testing::Test {
protected:
    InferRequest::Ptr request_ = load(CNNNetwork(readNetwork(doublingNetwork())));
};

TEST_F(SetBlobTest, RefusesAnUnknownName) {
    for (const std::string name : {"z", "X", "", "xx", "x.0"}) {
        EXPECT_THAT(
            [&] {
                request_->SetBlob(name, floats({1, 4}));
            },
            ThrowsMessage<NotFound>(HasSubstr("\"" + name + "\"")));
    }
}

TEST_F(SetBlobTest, RefusesAnEmptyPointer) {
    EXPECT_THAT([&] { request_->SetBlob("x", nullptr); },
                ThrowsMessage<NotAllocated>(HasSubstr("Input \"x\"")));
    EXPECT_THAT([&] { request_->SetBlob("y", nullptr); },
                ThrowsMessage<NotAllocated>(HasSubstr("Output \"y\"")));
}

TEST_F(SetBlobTest, RefusesABlobWithoutMemory) {
    const auto unallocated = make_shared_blob<float>(TensorDesc(Precision::FP32, {1, 4}, NC));
    EXPECT_THAT([&] { request_->SetBlob("x", unallocated); },
                ThrowsMessage<NotAllocated>(HasSubstr("without memory")));
    EXPECT_THROW(request_->SetBlob("y", unallocated), NotAllocated);
}

TEST_F(SetBlobTest, RefusesABlobWithoutElements) {
    EXPECT_THROW(request_->SetBlob("x", floats({1, 0})), ParameterMismatch);
    EXPECT_THROW(request_->SetBlob("y", floats({0})), ParameterMismatch);
}

TEST_F(SetBlobTest, RefusesADifferentElementCount) {
    EXPECT_THAT(
        [&] {
            request_->SetBlob("x", floats({1, 3}));
        },
        ThrowsMessage<ParameterMismatch>(AllOf(HasSubstr("4"), HasSubstr("3"))));
    EXPECT_THROW(request_->SetBlob("x", floats({1, 5})), ParameterMismatch);
    EXPECT_THROW(request_->SetBlob("y", floats({2, 4})), ParameterMismatch);
}

TEST_F(SetBlobTest, RefusesADifferentPrecision) {
    EXPECT_THAT(
        [&] {
            request_->SetBlob("x", blobOf<std::int32_t>(Precision::I32, {1, 4}, {}));
        },
        ThrowsMessage<ParameterMismatch>(AllOf(HasSubstr("FP32"), HasSubstr("I32"))));
    EXPECT_THROW(request_->SetBlob("y", blobOf<std::int8_t>(Precision::I8, {1, 4}, {})),
                 ParameterMismatch);
}

TEST_F(SetBlobTest, RefusesElementsSmallerThanThePrecision) {
    // Created without make_shared_blob, which would have refused it.
    const auto blob =
        std::make_shared<TBlob<std::uint8_t>>(TensorDesc(Precision::FP32, {1, 4}, NC));
    blob->allocate();
    EXPECT_THROW(request_->SetBlob("x", blob), ParameterMismatch);
}

TEST_F(SetBlobTest, DoesNotCompareTheLayout) {
    for (const Layout layout : {ANY, NC, CN, HW, BLOCKED}) {
        const auto blob = make_shared_blob<float>(TensorDesc(Precision::FP32, {1, 4}, layout));
        blob->allocate();
        EXPECT_NO_THROW(request_->SetBlob("x", blob));
    }
}

TEST_F(SetBlobTest, ARefusalEndsTheRound) {
    Blob::Ptr input = floats({1, 4}, {1, 2, 3, 4});
    const std::weak_ptr<Blob> watched = input;
    request_->SetBlob("x", input);
    EXPECT_THROW(request_->SetBlob("y", floats({1, 3})), ParameterMismatch);
    input.reset();
    EXPECT_TRUE(watched.expired());

    const Blob::Ptr output = floats({1, 4});
    request_->SetBlob("y", output);
    EXPECT_THROW(request_->Infer(), NotAllocated);
    request_->SetBlob("x", floats({1, 4}, {1, 2, 3, 4}));
    request_->SetBlob("y", output);
    request_->Infer();
    EXPECT_THAT(elementsOf<float>(output), ElementsAre(2, 4, 6, 8));
}

TEST_F(SetBlobTest, MakesNoCopy) {
    std::array<float, 4> input{};
    std::array<float, 4> output{};
    const TensorDesc desc(Precision::FP32, {1, 4}, NC);
    request_->SetBlob("x", make_shared_blob<float>(desc, input.data()));
    request_->SetBlob("y", make_shared_blob<float>(desc, output.data()));
    input = {5, 6, 7, 8};
    request_->Infer();
    EXPECT_THAT(output, ElementsAre(10, 12, 14, 16));
}

TEST(ScalarTest, InputsAndOutputsWithoutDimensionsHaveOneElement) {
    for (const int version : {10, 11}) {
        const std::string text = IrText(version)
                                     .parameter(0, "x", "f32", "", "x")
                                     .layer(1, "y", "Add", "", "f32", {"", ""}, {{"", "y"}})
                                     .result(2, "")
                                     .edge(0, 0, 1, 0)
                                     .edge(0, 0, 1, 1)
                                     .edge(1, 2, 2, 0)
                                     .str();
        const CNNNetwork network(readNetwork(text));
        EXPECT_EQ(network.getInputsInfo().at("x")->getTensorDesc().getDims(), SizeVector());
        EXPECT_EQ(network.getInputsInfo().at("x")->getLayout(), SCALAR);
        EXPECT_EQ(network.getOutputsInfo().at("y")->getDims(), SizeVector());
        const auto request = load(network);
        const Blob::Ptr output = floats({});
        request->SetBlob("x", floats({}, {21}));
        request->SetBlob("y", output);
        request->Infer();
        EXPECT_THAT(elementsOf<float>(output), ElementsAre(42));
    }
}

}  // namespace
}  // namespace InferenceEngine
