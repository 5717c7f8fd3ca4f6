// Loading through the client, as far as that is possible without a network.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "client_fixture.h"
#include "quavin/client.h"
#include "support/recording_model.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin {
namespace {

using ::testing::IsEmpty;
using testing::IsStatus;
using testing::IsStatusWith;
using ::testing::Not;
using testing::RecordingModel;
using ::testing::StrEq;
using testing::TempDirectory;
using ::testing::ThrowsMessage;

constexpr const char* kNotInitialized =
    "Trying to use quavin client before the sdk was initialized!";
constexpr const char* kNoTarget = "None of the target applicable for the platform found";
// The refusal of a target that was chosen but declares nothing.
constexpr const char* kNoInput = "There must be at least one defined input name";

QuavinModelType typeOf(std::uint64_t number) {
    return static_cast<QuavinModelType>(number);
}

class ClientModelsTest : public ClientFixture {
protected:
    ClientModelsTest() : client_(initialized()) {}

    std::string package(const std::string& target) const {
        directory_.write("manifest.json", R"({"targets": {")" + target + R"(": {}}})");
        return directory_.text();
    }
    std::size_t registeredModels() const {
        return client_.queryRuntimeStatus().getLoadedModels().size();
    }

    TempDirectory directory_;
    QuavinClient& client_;
    std::shared_ptr<RecordingModel> held_ = std::make_shared<RecordingModel>();
    std::shared_ptr<QuavinModel> model_ = held_;

private:
    static QuavinClient& initialized() {
        QuavinClient::init(QuavinConfig());
        return QuavinClient::instance();
    }
};

TEST_F(ClientModelsTest, EveryOverloadFailsWhileOffAndKeepsThePointer) {
    QuavinClient::terminate();
    const auto metadata = std::make_shared<ModelMetadata>();
    const auto type = QuavinModelType::Openvino;
    const auto off = IsStatus(NOT_INITIALIZED, kNotInitialized);
    EXPECT_THAT(client_.getModel("", model_, 0, type), off);
    EXPECT_THAT(client_.getModel("", model_, Device(), 0), off);
    EXPECT_THAT(client_.getModel(u"", model_, 0, type), off);
    EXPECT_THAT(client_.getModel(u"", model_, Device(), 0), off);
    EXPECT_THAT(client_.getModel(metadata, model_, Device()), off);
    EXPECT_THAT(client_.getModel(metadata, model_, type), off);
    EXPECT_THAT(client_.getModel(nullptr, model_, type), off);
    EXPECT_EQ(model_, held_);
}

TEST_F(ClientModelsTest, AnEmptyPathIsRefusedAndKeepsThePointer) {
    const auto empty = IsStatus(INVALID_MODEL_PATH, "modelpath specified is empty");
    EXPECT_THAT(client_.getModel("", model_, 0, QuavinModelType::Openvino), empty);
    EXPECT_THAT(client_.getModel("", model_, Device(), 0), empty);
    EXPECT_THAT(client_.getModel(u"", model_, 0, QuavinModelType::Openvino), empty);
    EXPECT_THAT(client_.getModel(u"", model_, Device(), 0), empty);
    EXPECT_EQ(model_, held_);
}

TEST_F(ClientModelsTest, AMissingManifestIsNamedAndClearsThePointer) {
    EXPECT_THAT(client_.getModel(directory_.text(), model_, 0, QuavinModelType::Openvino),
                IsStatus(MODEL_METADATA_ERROR, "Failed to open metadata file at " +
                                                   directory_.text() + "\\manifest.json"));
    EXPECT_EQ(model_, nullptr);
}

TEST_F(ClientModelsTest, ATrailingSeparatorIsDoubled) {
    EXPECT_THAT(client_.getModel(directory_.text() + "\\", model_, Device(), 0),
                IsStatus(MODEL_METADATA_ERROR, "Failed to open metadata file at " +
                                                   directory_.text() + "\\\\manifest.json"));
}

TEST_F(ClientModelsTest, TargetsOfOtherEnginesAreNotUsed) {
    EXPECT_THAT(client_.getModel(package("WinML"), model_, 0, QuavinModelType::Openvino),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_EQ(model_, nullptr);
}

TEST_F(ClientModelsTest, TypesZeroAndFourAreAccepted) {
    const std::string path = package("Openvino");
    for (const std::uint64_t number : {0U, 4U}) {
        EXPECT_THAT(client_.getModel(path, model_, 0, typeOf(number)),
                    IsStatus(MODEL_METADATA_ERROR, kNoInput))
            << number;
        EXPECT_EQ(model_, nullptr);
    }
}

TEST_F(ClientModelsTest, EveryOtherTypeIsRefused) {
    const std::string path = package("Openvino");
    for (const std::uint64_t number : {1U, 2U, 5U, 6U, 8U, 32U}) {
        EXPECT_THAT(client_.getModel(path, model_, 0, typeOf(number)),
                    IsStatus(MODEL_METADATA_ERROR, kNoTarget))
            << number;
        Device device;
        device.engineType = typeOf(number);
        EXPECT_THAT(client_.getModel(path, model_, device, 0),
                    IsStatus(MODEL_METADATA_ERROR, kNoTarget))
            << number;
    }
    EXPECT_THAT(client_.getModel(path, model_, 0, typeOf((std::uint64_t{1} << 32U) + 4)),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_EQ(registeredModels(), 0U);
}

TEST_F(ClientModelsTest, TheListedDeviceIsRefused) {
    const Device cpu = OpenVinoDeviceManager().getDevices().at(0);
    EXPECT_THAT(client_.getModel(package("Openvino"), model_, cpu, 0),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
}

TEST_F(ClientModelsTest, TheOptionHasNoEffect) {
    const std::string path = package("Openvino");
    for (const int option : {-1, 1, 1000}) {
        EXPECT_THAT(client_.getModel(path, model_, option, QuavinModelType::Openvino),
                    IsStatus(MODEL_METADATA_ERROR, kNoInput));
    }
}

TEST_F(ClientModelsTest, AModelThatFailsToLoadThroughADeviceStaysRegistered) {
    EXPECT_THAT(client_.getModel(package("Openvino"), model_, Device(), 0),
                IsStatus(MODEL_METADATA_ERROR, kNoInput));
    EXPECT_EQ(model_, nullptr);
    ASSERT_EQ(registeredModels(), 1U);
    client_.getModelManager().unloadModel(client_.queryRuntimeStatus().getLoadedModels().at(0));
    EXPECT_EQ(registeredModels(), 0U);
}

TEST_F(ClientModelsTest, AModelThatFailsToLoadThroughATypeIsNotRegistered) {
    client_.getModel(package("Openvino"), model_, 0, QuavinModelType::Openvino);
    EXPECT_EQ(registeredModels(), 0U);
}

TEST_F(ClientModelsTest, NullMetadataIsRefused) {
    const std::shared_ptr<ModelMetadata> none;
    EXPECT_THAT(client_.getModel(none, model_, Device()),
                IsStatusWith(INVALID_ARGUMENTS, Not(IsEmpty())));
    EXPECT_THAT(client_.getModel(none, model_, QuavinModelType::Openvino),
                IsStatusWith(INVALID_ARGUMENTS, Not(IsEmpty())));
    EXPECT_EQ(registeredModels(), 0U);
}

TEST_F(ClientModelsTest, MetadataWithoutATargetKeepsTheOldModel) {
    const auto metadata = std::make_shared<ModelMetadata>();
    EXPECT_THAT(client_.getModel(metadata, model_, Device()),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_THAT(client_.getModel(metadata, model_, QuavinModelType::Openvino),
                IsStatus(MODEL_METADATA_ERROR, kNoTarget));
    EXPECT_EQ(model_, held_);
}

TEST_F(ClientModelsTest, AFailedLoadFromMetadataClearsThePointer) {
    const auto metadata = std::make_shared<ModelMetadata>();
    metadata->getTargets().emplace(QuavinModelType::Openvino, ModelTarget());
    EXPECT_THAT(client_.getModel(metadata, model_, QuavinModelType::Openvino),
                IsStatus(MODEL_METADATA_ERROR, kNoInput));
    EXPECT_EQ(model_, nullptr);
}

TEST_F(ClientModelsTest, AUtf16PathNamesTheSameFile) {
    const std::string path = directory_.text() + "/\xc3\xa9";
    EXPECT_THAT(client_.getModel(std::u16string(path.begin(), path.end() - 2) + u"\u00e9", model_,
                                 0, QuavinModelType::Openvino),
                IsStatus(MODEL_METADATA_ERROR,
                         "Failed to open metadata file at " + path + "\\manifest.json"));
}

TEST_F(ClientModelsTest, APathThatIsNotUtf16Throws) {
    EXPECT_THAT([&] { client_.getModel(u"\xd800", model_, 0, QuavinModelType::Openvino); },
                ThrowsMessage<std::range_error>(StrEq("bad conversion")));
    EXPECT_THAT([&] { client_.getModel(u"\xd800", model_, Device(), 0); },
                ThrowsMessage<std::range_error>(StrEq("bad conversion")));
    EXPECT_EQ(model_, held_);
}

}  // namespace
}  // namespace VelmoraQuavin
