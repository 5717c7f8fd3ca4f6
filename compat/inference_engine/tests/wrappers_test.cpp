#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <inference_engine.hpp>
#include <memory>
#include <sstream>
#include <string>
#include <typeinfo>

namespace InferenceEngine {
namespace {

using testing::IsEmpty;
using testing::StrEq;
using testing::ThrowsMessage;
using General = details::InferenceEngineException;

class FakeNetwork final : public ICNNNetwork {
public:
    void Release() noexcept override {}
    const InputsDataMap& getInputsInfo() const noexcept override { return inputs_; }
    const OutputsDataMap& getOutputsInfo() const noexcept override { return outputs_; }

private:
    const InputsDataMap inputs_{{"in", std::make_shared<InputInfo>()}};
    const OutputsDataMap outputs_{{"out", nullptr}};
};

class FakeReader final : public ICNNNetReader {
public:
    explicit FakeReader(ICNNNetwork* network) : network_(network) {}
    void Release() noexcept override {}
    StatusCode ReadNetwork(const void* /*model*/, std::size_t /*size*/,
                           ResponseDesc* /*response*/) noexcept override {
        return OK;
    }
    StatusCode SetWeights(const TBlob<std::uint8_t>::Ptr& /*weights*/,
                          ResponseDesc* /*response*/) noexcept override {
        return OK;
    }
    ICNNNetwork* getNetwork(ResponseDesc* /*response*/) noexcept override { return network_; }

private:
    ICNNNetwork* network_;
};

/** Returns the configured result. */
class FakeRequest final : public IInferRequest {
public:
    void Release() noexcept override {}
    StatusCode SetBlob(const char* name, const Blob::Ptr& /*blob*/,
                       ResponseDesc* response) noexcept override {
        lastName = name;
        return respond(response);
    }
    StatusCode Infer(ResponseDesc* response) noexcept override { return respond(response); }

    StatusCode status = OK;
    const char* text = nullptr;
    std::string lastName;

private:
    StatusCode respond(ResponseDesc* response) const {
        if (text != nullptr) {
            std::strcpy(response->msg, text);
        }
        return status;
    }
};

class FakeExecutableNetwork final : public IExecutableNetwork {
public:
    void Release() noexcept override {}
    StatusCode CreateInferRequest(IInferRequest::Ptr& request,
                                  ResponseDesc* response) noexcept override {
        std::strcpy(response->msg, "no more requests");
        request = given;
        return status;
    }

    StatusCode GetOutputsInfo(ConstOutputsDataMap& outputs,
                              ResponseDesc* response) const noexcept override {
        std::strcpy(response->msg, "no outputs");
        outputs = {{"out", nullptr}};
        return status;
    }

    StatusCode GetInputsInfo(ConstInputsDataMap& inputs,
                             ResponseDesc* response) const noexcept override {
        std::strcpy(response->msg, "no inputs");
        inputs = {{"in", nullptr}};
        return status;
    }

    StatusCode Export(std::ostream& networkModel, ResponseDesc* response) noexcept override {
        std::strcpy(response->msg, "no export");
        networkModel << "exported";
        return status;
    }

    StatusCode GetConfig(const std::string& name, Parameter& result,
                         ResponseDesc* response) const noexcept override {
        std::strcpy(response->msg, "no such value");
        result = name + " of it";
        return status;
    }

    StatusCode status = OK;
    IInferRequest::Ptr given;
};

TEST(CNNNetworkTest, ANullNetworkThrows) {
    const auto throwsNotInitialized =
        ThrowsMessage<General>(StrEq("CNNNetwork was not initialized."));
    EXPECT_THAT([] { CNNNetwork(std::shared_ptr<ICNNNetwork>()); }, throwsNotInitialized);
    EXPECT_THAT([] { CNNNetwork(std::shared_ptr<ICNNNetReader>()); }, throwsNotInitialized);
    EXPECT_THAT([] { CNNNetwork(std::make_shared<FakeReader>(nullptr)); }, throwsNotInitialized);
}

TEST(CNNNetworkTest, ForwardsToItsNetwork) {
    const auto inner = std::make_shared<FakeNetwork>();
    CNNNetwork network{std::shared_ptr<ICNNNetwork>(inner)};
    EXPECT_EQ(network.getInputsInfo().count("in"), 1U);
    EXPECT_EQ(network.getOutputsInfo().count("out"), 1U);
    EXPECT_EQ(&static_cast<ICNNNetwork&>(network), inner.get());
}

TEST(CNNNetworkTest, KeepsItsReaderAlive) {
    FakeNetwork inner;
    std::shared_ptr<ICNNNetReader> reader = std::make_shared<FakeReader>(&inner);
    const std::weak_ptr<ICNNNetReader> watched = reader;
    {
        const CNNNetwork network(reader);
        reader.reset();
        EXPECT_FALSE(watched.expired());
        EXPECT_EQ(network.getOutputsInfo().size(), 1U);
    }
    EXPECT_TRUE(watched.expired());
}

TEST(InferRequestTest, IsFalseWithoutARequest) {
    InferRequest request;
    EXPECT_FALSE(static_cast<bool>(request));
    EXPECT_TRUE(!request);
    EXPECT_THROW(request.Infer(), General);
    EXPECT_THROW(request.SetBlob("in", nullptr), General);
}

TEST(InferRequestTest, ThrowsTheExceptionOfAFailureStatusWithItsText) {
    const auto inner = std::make_shared<FakeRequest>();
    InferRequest request(inner);
    EXPECT_TRUE(static_cast<bool>(request));
    EXPECT_FALSE(!request);

    inner->status = NOT_FOUND;
    inner->text = "no such port";
    EXPECT_THAT([&] { request.SetBlob("in", nullptr); },
                ThrowsMessage<NotFound>(StrEq("no such port")));
    EXPECT_EQ(inner->lastName, "in");
    inner->status = GENERAL_ERROR;
    inner->text = "the device failed";
    EXPECT_THAT([&] { request.Infer(); }, ThrowsMessage<General>(StrEq("the device failed")));
}

TEST(InferRequestTest, DoesNotCarryATextIntoTheNextFailure) {
    const auto inner = std::make_shared<FakeRequest>();
    InferRequest request(inner);
    inner->status = UNEXPECTED;
    inner->text = "first";
    EXPECT_THROW(request.Infer(), Unexpected);
    inner->text = nullptr;
    EXPECT_THAT([&] { request.Infer(); }, ThrowsMessage<Unexpected>(IsEmpty()));
}

TEST(ExecutableNetworkTest, WrapsTheDevicesRequest) {
    const auto inner = std::make_shared<FakeExecutableNetwork>();
    inner->given = std::make_shared<FakeRequest>();
    const InferRequest::Ptr request = ExecutableNetwork(inner).CreateInferRequestPtr();
    ASSERT_NE(request, nullptr);
    EXPECT_TRUE(static_cast<bool>(*request));
}

TEST(ExecutableNetworkTest, ThrowsIfTheDeviceReturnsNoRequest) {
    const auto inner = std::make_shared<FakeExecutableNetwork>();
    ExecutableNetwork network(inner);
    EXPECT_THAT([&] { network.CreateInferRequestPtr(); },
                ThrowsMessage<General>(StrEq("Internal error: pointer to infer request is null")));
    inner->status = NETWORK_NOT_LOADED;
    EXPECT_THAT([&] { network.CreateInferRequestPtr(); },
                ThrowsMessage<NetworkNotLoaded>(StrEq("no more requests")));
    EXPECT_THROW(ExecutableNetwork().CreateInferRequestPtr(), General);
}

TEST(ExecutableNetworkTest, ReturnsTheDevicesConfigurationAndThrowsItsRefusals) {
    const auto inner = std::make_shared<FakeExecutableNetwork>();
    const ExecutableNetwork network(inner);
    EXPECT_EQ(network.GetConfig("colour").as<std::string>(), "colour of it");
    inner->status = NOT_FOUND;
    EXPECT_THAT([&] { network.GetConfig("colour"); },
                ThrowsMessage<NotFound>(StrEq("no such value")));
    EXPECT_THROW(ExecutableNetwork().GetConfig("colour"), General);
}

TEST(ExecutableNetworkTest, ReturnsTheDevicesPortsAndThrowsItsRefusals) {
    const auto inner = std::make_shared<FakeExecutableNetwork>();
    const ExecutableNetwork network(inner);
    EXPECT_EQ(network.GetInputsInfo().count("in"), 1U);
    EXPECT_EQ(network.GetOutputsInfo().count("out"), 1U);
    inner->status = NETWORK_NOT_LOADED;
    EXPECT_THAT([&] { network.GetInputsInfo(); },
                ThrowsMessage<NetworkNotLoaded>(StrEq("no inputs")));
    EXPECT_THAT([&] { network.GetOutputsInfo(); },
                ThrowsMessage<NetworkNotLoaded>(StrEq("no outputs")));
    EXPECT_THROW(ExecutableNetwork().GetInputsInfo(), General);
    EXPECT_THROW(ExecutableNetwork().GetOutputsInfo(), General);
}

TEST(ExecutableNetworkTest, ExportsToTheStreamAndThrowsTheDevicesRefusal) {
    const auto inner = std::make_shared<FakeExecutableNetwork>();
    ExecutableNetwork network(inner);
    std::ostringstream stream;
    network.Export(stream);
    EXPECT_EQ(stream.str(), "exported");
    inner->status = NOT_IMPLEMENTED;
    EXPECT_THAT([&] { network.Export(stream); }, ThrowsMessage<NotImplemented>(StrEq("no export")));
    EXPECT_THROW(ExecutableNetwork().Export(stream), General);
}

TEST(ParameterTest, HoldsAValueOfOneType) {
    EXPECT_TRUE(Parameter().empty());
    EXPECT_FALSE(Parameter().is<std::string>());
    EXPECT_THROW(Parameter().as<int>(), std::bad_cast);

    const Parameter number = 7;
    EXPECT_FALSE(number.empty());
    EXPECT_TRUE(number.is<int>());
    EXPECT_EQ(number.as<int>(), 7);
    EXPECT_FALSE(number.is<std::string>());
    EXPECT_THROW(number.as<std::string>(), std::bad_cast);

    const Parameter copy = number;  // NOLINT(performance-unnecessary-copy-initialization): tested
    EXPECT_EQ(copy.as<int>(), 7);
}

TEST(ReleaseTest, TheLastHolderReleasesTheObject) {
    static int released = 0;
    class Counting final : public details::IRelease {
    public:
        void Release() noexcept override {
            ++released;
            delete this;
        }
    };
    {
        const auto first = details::shared_from_irelease(new Counting);
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): what is tested
        const auto second = first;
        EXPECT_EQ(released, 0);
    }
    EXPECT_EQ(released, 1);
    EXPECT_EQ(details::shared_from_irelease<Counting>(nullptr), nullptr);
}

}  // namespace
}  // namespace InferenceEngine
