// Buffers that a C host hands over are released exactly once, whatever becomes of the load.

#include <map>
#include <stdexcept>

#include "integration/c/c_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::Each;
using ::testing::Pair;

class CBuffers : public CInterface {
protected:
    CBuffers() : package_(affineNetwork()), buffers_(package_.buffers()) {
        // The address that weights used in place must be a multiple of.
        std::memcpy(weights_, package_.weights.data(), package_.weights.size());
        buffers_.at(2).data = weights_;
        for (quavin_buffer& buffer : buffers_) {
            released_[buffer.name] = 0;
            buffer.user = &released_[buffer.name];
            buffer.release = [](void* user) { ++*static_cast<int*>(user); };
        }
    }

    quavin_status loadBuffers(const quavin_load_options* options = nullptr) {
        return quavin_load_buffers(buffers_.data(), buffers_.size(), options, &model_);
    }
    void expectAllReleasedOnce() { EXPECT_THAT(released_, Each(Pair(::testing::_, 1))); }

    PackageInMemory package_;
    alignas(64) unsigned char weights_[256] = {};
    std::map<std::string, int> released_;
    std::vector<quavin_buffer> buffers_;
};

TEST_F(CBuffers, WeightsAreReleasedWithTheLastModelOverThem) {
    ASSERT_THAT(loadBuffers(), Succeeds());
    EXPECT_EQ(released_["manifest.json"], 1);
    EXPECT_EQ(released_["net.xml"], 1);
    EXPECT_EQ(released_["net.bin"], 0);
    quavin_model* clone = nullptr;
    ASSERT_THAT(quavin_clone(model_, &clone), Succeeds());
    release(model_);
    EXPECT_EQ(released_["net.bin"], 0);
    EXPECT_EQ(predictFloats(clone, {1, 2, 3, -4}), (std::vector<float>{2.5F, 5, 7.5F, -6}));
    release(clone);
    expectAllReleasedOnce();
}

TEST_F(CBuffers, AreReleasedByALoadThatFails) {
    buffers_.at(1).size /= 2;
    EXPECT_EQ(loadBuffers(), QUAVIN_FILE_ERROR);
    expectAllReleasedOnce();
}

TEST_F(CBuffers, AreReleasedByALoadWithoutAManifest) {
    buffers_.at(0).name = "another.json";
    EXPECT_EQ(loadBuffers(), QUAVIN_MODEL_METADATA_ERROR);
    expectAllReleasedOnce();
}

TEST_F(CBuffers, AreReleasedIfOneHasNoName) {
    buffers_.at(1).name = nullptr;
    EXPECT_THAT(loadBuffers(),
                FailsWith(QUAVIN_INVALID_ARGUMENTS, ::testing::StrEq("\"name\" is null")));
    expectAllReleasedOnce();
}

TEST_F(CBuffers, AreReleasedIfOneHasNoBytes) {
    buffers_.at(1).data = nullptr;
    EXPECT_EQ(loadBuffers(), QUAVIN_INVALID_ARGUMENTS);
    expectAllReleasedOnce();
}

TEST_F(CBuffers, AreReleasedIfTheOptionsAreUnusable) {
    quavin_load_options options = QUAVIN_LOAD_OPTIONS_INIT;
    options.size = 0;
    EXPECT_EQ(loadBuffers(&options), QUAVIN_INVALID_ARGUMENTS);
    expectAllReleasedOnce();
}

TEST_F(CBuffers, AreReleasedIfThereIsNoRoomForTheHandle) {
    EXPECT_EQ(quavin_load_buffers(buffers_.data(), buffers_.size(), nullptr, nullptr),
              QUAVIN_INVALID_ARGUMENTS);
    expectAllReleasedOnce();
}

TEST_F(CBuffers, AreReleasedIfTheLibraryIsOff) {
    ASSERT_THAT(quavin_terminate(), Succeeds());
    EXPECT_EQ(loadBuffers(), QUAVIN_NOT_INITIALIZED);
    expectAllReleasedOnce();
}

TEST_F(CBuffers, AreReleasedByADescription) {
    quavin_network* network = nullptr;
    ASSERT_THAT(quavin_describe_buffers(buffers_.data(), buffers_.size(), nullptr, &network),
                Succeeds());
    expectAllReleasedOnce();
    EXPECT_THAT(quavin_network_release(network), Succeeds());
}

TEST_F(CBuffers, AreReleasedByADescriptionThatFails) {
    buffers_.at(1).size /= 2;
    quavin_network* network = nullptr;
    EXPECT_EQ(quavin_describe_buffers(buffers_.data(), buffers_.size(), nullptr, &network),
              QUAVIN_FILE_ERROR);
    expectAllReleasedOnce();
}

TEST_F(CBuffers, AReleaseFunctionMayUseTheLibrary) {
    ASSERT_THAT(loadNetwork(sumNetwork()), Succeeds());
    for (quavin_buffer& buffer : buffers_) {
        buffer.user = model_;
        buffer.release = [](void* user) {
            std::size_t count = 0;
            EXPECT_THAT(quavin_model_get_input_count(static_cast<quavin_model*>(user), &count),
                        Succeeds());
            EXPECT_EQ(count, 1U);
        };
    }
    quavin_model* model = nullptr;
    ASSERT_THAT(quavin_load_buffers(buffers_.data(), buffers_.size(), nullptr, &model), Succeeds());
    release(model);
}

TEST_F(CBuffers, AReleaseFunctionThatThrowsDoesNotDisturbTheLoad) {
    buffers_.at(0).release = [](void* user) {
        ++*static_cast<int*>(user);
        throw std::runtime_error("thrown by a release function");
    };
    EXPECT_THAT(loadBuffers(), Succeeds());
    release(model_);
    expectAllReleasedOnce();
}

}  // namespace
}  // namespace VelmoraQuavin::testing
