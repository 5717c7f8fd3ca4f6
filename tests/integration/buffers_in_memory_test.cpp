// Packages whose files a host has in memory.

#include <array>

#include "integration/memory_package_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class BuffersInMemory : public MemoryPackageTest {
protected:
    QuavinStatus load(const std::vector<PackageBuffer>& buffers) {
        return client_.getModelFromBuffers(buffers, keys_, model_, QuavinModelType::Openvino,
                                           options_);
    }

    const std::string manifest_ = describe(affineNetwork()).manifest();
    const std::string topology_ = affineNetwork().topology();
    const PackageBuffer manifestBuffer_{"manifest.json", manifest_.data(), manifest_.size(), {}};
    const PackageBuffer topologyBuffer_{"net.xml", topology_.data(), topology_.size(), {}};
    EngineOptions options_;
};

TEST_F(BuffersInMemory, LoadAndPredictWhenTheyAreGone) {
    ASSERT_THAT(loadBuffers(packageOf(affineNetwork())), IsOk());
    expectAffineNumbers();
}

TEST_F(BuffersInMemory, MayBeSecuredOneByOne) {
    keys_.setComponentKey(countingKey().data());
    ASSERT_THAT(loadBuffers(securedPackageOf(affineNetwork(), countingKey())), IsOk());
    expectAffineNumbers();
    keys_.setComponentKey(anotherKey().data());
    EXPECT_THAT(loadBuffers(securedPackageOf(affineNetwork(), countingKey())),
                IsStatusWith(FILE_ERROR, Not(IsEmpty())));
}

TEST_F(BuffersInMemory, OfAnInvalidSecuredSizeAnswerTheirName) {
    keys_.setComponentKey(countingKey().data());
    PackageFiles files = securedPackageOf(affineNetwork(), countingKey());
    files["net.bin"].pop_back();
    EXPECT_THAT(loadBuffers(files), IsStatus(FILE_ERROR, "Could not decrypt file : net.bin"));
}

TEST_F(BuffersInMemory, WithAnOwnerAreNotDecryptedInPlace) {
    const PackageFiles before = securedPackageOf(affineNetwork(), countingKey());
    const auto files = std::make_shared<const PackageFiles>(before);
    std::vector<PackageBuffer> buffers;
    for (const auto& [name, content] : *files) {
        buffers.push_back({name, content.data(), content.size(), files});
    }
    keys_.setComponentKey(countingKey().data());
    ASSERT_THAT(load(buffers), IsOk());
    expectAffineNumbers();
    EXPECT_EQ(*files, before);
}

// Weights that belong to an owner, which tells when it goes.
class OwnedWeights : public BuffersInMemory {
protected:
    struct Owner {
        alignas(64) std::array<char, 1024> bytes{};
    };

    PackageBuffer weights(std::size_t offset = 0) {
        auto owner = std::make_shared<Owner>();
        const std::string content = affineNetwork().weights();
        content.copy(owner->bytes.data() + offset, content.size());
        owner_ = owner;
        return {"net.bin", owner->bytes.data() + offset, content.size(), owner};
    }
    // The offsets of the network are its second constant. They are added as they are in the
    // memory, unless the runtime has made a copy of its own.
    QuavinStatus loadOwned(std::size_t offset = 0) {
        return load({manifestBuffer_, topologyBuffer_, weights(offset)});
    }

    std::weak_ptr<Owner> owner_;
};

TEST_F(OwnedWeights, ArePredictedWithAndKeptAsLongAsTheModel) {
    ASSERT_THAT(loadOwned(), IsOk());
    EXPECT_FALSE(owner_.expired());
    expectAffineNumbers();
    outputs_.clear();
    EXPECT_FALSE(owner_.expired());
    model_.reset();
    EXPECT_TRUE(owner_.expired());
}

TEST_F(OwnedWeights, AreKeptByClones) {
    ASSERT_THAT(loadOwned(), IsOk());
    std::shared_ptr<QuavinModel> clone;
    ASSERT_THAT(client_.cloneModel(model_, clone), IsOk());
    model_.reset();
    EXPECT_FALSE(owner_.expired());
    model_ = clone;
    clone.reset();
    expectAffineNumbers();
    outputs_.clear();
    model_.reset();
    EXPECT_TRUE(owner_.expired());
}

TEST_F(OwnedWeights, AreCopiedAndReleasedIfTheyAreNotAligned) {
    ASSERT_THAT(loadOwned(1), IsOk());
    EXPECT_TRUE(owner_.expired());
    expectAffineNumbers();
}

TEST_F(OwnedWeights, AreReleasedIfTheNetworkIsRefused) {
    EXPECT_THAT(load({manifestBuffer_, {"net.xml", "<net>", 5, nullptr}, weights()}),
                IsStatusWith(FILE_ERROR, Not(IsEmpty())));
    model_.reset();
    EXPECT_TRUE(owner_.expired());
}

TEST_F(OwnedWeights, AreNotKeptByDescribing) {
    std::vector<ModelFeatureDescriptor> inputs;
    std::vector<ModelFeatureDescriptor> outputs;
    ASSERT_THAT(describeNetworkFromBuffers({manifestBuffer_, topologyBuffer_, weights()}, keys_,
                                           inputs, outputs),
                IsOk());
    EXPECT_TRUE(owner_.expired());
    EXPECT_EQ(inputs.at(0).name(), "x");
    EXPECT_EQ(outputs.at(0).name(), "y");
}

TEST_F(OwnedWeights, OfNoBytesAreFine) {
    const std::string manifest = describe(sumNetwork()).manifest();
    const std::string topology = sumNetwork().topology();
    const auto owner = std::make_shared<int>();
    ASSERT_THAT(load({{"manifest.json", manifest.data(), manifest.size(), nullptr},
                      {"net.xml", topology.data(), topology.size(), nullptr},
                      {"net.bin", nullptr, 0, owner}}),
                IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    EXPECT_THAT(predictFloats({1, 2}), ElementsAre(2.F, 4.F));
}

TEST_F(BuffersInMemory, AreRegisteredWithADevice) {
    const std::string weights = affineNetwork().weights();
    ASSERT_THAT(
        client_.getModelFromBuffers(
            {manifestBuffer_, topologyBuffer_, {"net.bin", weights.data(), weights.size(), {}}},
            keys_, model_, Device(), EngineOptions()),
        IsOk());
    expectAffineNumbers();
    EXPECT_THAT(client_.queryRuntimeStatus().getLoadedModels(), ElementsAre(model_));
}

TEST_F(BuffersInMemory, CannotBeLoadedAgainAfterUnloadingEvenWithOwners) {
    const auto files = std::make_shared<const PackageFiles>(packageOf(affineNetwork()));
    std::vector<PackageBuffer> buffers;
    for (const auto& [name, content] : *files) {
        buffers.push_back({name, content.data(), content.size(), files});
    }
    ASSERT_THAT(load(buffers), IsOk());
    const auto metadata = model_->getMetadata();
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    expectThrows<FileException>(
        [&] { static_cast<void>(model_->load(metadata)); }, FILE_ERROR,
        "The package was in memory, which the library did not keep: load it from there again");
}

TEST_F(BuffersInMemory, ThatAreUnusableAreRefused) {
    EXPECT_THAT(load({}), IsStatus(MODEL_METADATA_ERROR, "No buffer is named manifest.json"));
    EXPECT_THAT(load({manifestBuffer_, {"net.xml", nullptr, 9, nullptr}}),
                IsStatus(INVALID_ARGUMENTS, "Buffer \"net.xml\": its bytes must not be null"));
    EXPECT_THAT(
        load({manifestBuffer_, topologyBuffer_, topologyBuffer_}),
        IsStatus(INVALID_ARGUMENTS, "Buffer \"net.xml\": there is another one of this name"));
    EXPECT_THAT(load({manifestBuffer_, topologyBuffer_}),
                IsStatus(FILE_ERROR, "The package in memory does not contain \"net.bin\""));
    std::vector<ModelFeatureDescriptor> ports;
    EXPECT_THAT(describeNetworkFromBuffers({}, keys_, ports, ports),
                IsStatus(MODEL_METADATA_ERROR, "No buffer is named manifest.json"));
}

TEST_F(BuffersInMemory, AreNotDecryptedWithTheKeyOfAnArchive) {
    keys_.setArchiveKey(countingKey().data());
    ASSERT_THAT(loadBuffers(packageOf(affineNetwork())), IsOk());
    expectAffineNumbers();
}

}  // namespace
}  // namespace VelmoraQuavin::testing
