// The registry and its accounts, from C.

#include "integration/c/c_test.h"
#include "quavin/client.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::StrEq;

class CRegistry : public CInterface {
protected:
    CRegistry() {
        writePackage(directory_, affineNetwork());
        options_.registered = 1;
    }
    ~CRegistry() override {
        EXPECT_THAT(quavin_registry_release(registry_), Succeeds());
        for (const auto& model : QuavinClient::instance().queryRuntimeStatus().getLoadedModels()) {
            QuavinClient::instance().getModelManager().unloadModel(model);
        }
    }

    std::size_t takeSnapshot() {
        std::size_t count = 0;
        EXPECT_THAT(quavin_registry_release(registry_), Succeeds());
        EXPECT_THAT(quavin_query_registry(&registry_), Succeeds());
        EXPECT_THAT(quavin_registry_get_count(registry_, &count), Succeeds());
        return count;
    }

    quavin_load_options options_ = QUAVIN_LOAD_OPTIONS_INIT;
    quavin_registry* registry_ = nullptr;
};

TEST_F(CRegistry, HoldsOnlyModelsThatAskForIt) {
    ASSERT_THAT(load(), Succeeds());
    EXPECT_EQ(takeSnapshot(), 0U);
    ASSERT_THAT(load(&options_), Succeeds());
    EXPECT_EQ(takeSnapshot(), 1U);
}

TEST_F(CRegistry, HoldsModelsFromArchivesAndBuffers) {
    const PackageInMemory package(affineNetwork());
    const std::string archive = package.archive();
    const auto buffers = package.buffers();
    ASSERT_THAT(quavin_load_archive(archive.data(), archive.size(), &options_, &model_),
                Succeeds());
    release(model_);
    ASSERT_THAT(quavin_load_buffers(buffers.data(), buffers.size(), &options_, &model_),
                Succeeds());
    EXPECT_EQ(takeSnapshot(), 2U);
}

TEST_F(CRegistry, HoldsModelsWithKeys) {
    const quavin_keys keys = QUAVIN_KEYS_INIT;
    options_.keys = &keys;
    ASSERT_THAT(load(&options_), Succeeds());
    EXPECT_EQ(takeSnapshot(), 1U);
}

TEST_F(CRegistry, KeepsAModelWhoseHandleIsReleased) {
    ASSERT_THAT(load(&options_), Succeeds());
    release(model_);
    ASSERT_EQ(takeSnapshot(), 1U);
    ASSERT_THAT(quavin_registry_get_model(registry_, 0, &model_), Succeeds());
    EXPECT_EQ(predictFloats(model_, {0, 0, 0, 0}), (std::vector<float>{0.5F, 1, 1.5F, 2}));
}

TEST_F(CRegistry, GivesModelsUpWhenTheyAreUnregistered) {
    ASSERT_THAT(load(&options_), Succeeds());
    ASSERT_THAT(quavin_unregister(model_), Succeeds());
    EXPECT_EQ(takeSnapshot(), 0U);
    EXPECT_THAT(
        quavin_unregister(model_),
        FailsWith(QUAVIN_MODEL_NOT_LOADED, StrEq("Could not remove model from references")));
}

TEST_F(CRegistry, RecordsWhatHostsAccountFor) {
    ASSERT_THAT(load(&options_), Succeeds());
    ASSERT_THAT(quavin_model_set_memory(model_, 1234), Succeeds());
    ASSERT_EQ(takeSnapshot(), 1U);
    quavin_registry_entry entry = QUAVIN_REGISTRY_ENTRY_INIT;
    ASSERT_THAT(quavin_registry_get_entry(registry_, 0, &entry), Succeeds());
    EXPECT_STREQ(entry.name, "a model");
    EXPECT_EQ(entry.memory, 1234U);
    EXPECT_EQ(entry.memory_limit, UINT64_MAX);
    EXPECT_THAT(quavin_model_set_memory(model_, UINT64_MAX),
                FailsWith(QUAVIN_MEMORY_LIMIT_EXCEEDED,
                          StrEq("The account's limit is 18446744073709551615")));
    ASSERT_EQ(takeSnapshot(), 1U);
    ASSERT_THAT(quavin_registry_get_entry(registry_, 0, &entry), Succeeds());
    EXPECT_EQ(entry.memory, 1234U);
}

TEST_F(CRegistry, HasNoAccountForOtherModels) {
    ASSERT_THAT(load(), Succeeds());
    EXPECT_THAT(quavin_model_set_memory(model_, 1),
                FailsWith(QUAVIN_MODEL_NOT_LOADED, StrEq("The model is not registered")));
}

TEST_F(CRegistry, RefusesAnIndexPastTheEnd) {
    takeSnapshot();
    const auto refused = FailsWith(QUAVIN_OUT_OF_RANGE, StrEq("There is no index 0 among 0"));
    quavin_registry_entry entry = QUAVIN_REGISTRY_ENTRY_INIT;
    EXPECT_THAT(quavin_registry_get_entry(registry_, 0, &entry), refused);
    EXPECT_THAT(quavin_registry_get_model(registry_, 0, &model_), refused);
}

TEST_F(CRegistry, ShowsAModelThatFailedToLoad) {
    directory_.write("net.xml", "no network");
    EXPECT_NE(load(&options_), QUAVIN_SUCCESS);
    ASSERT_EQ(takeSnapshot(), 1U);
    ASSERT_THAT(quavin_registry_get_model(registry_, 0, &model_), Succeeds());
    EXPECT_THAT(quavin_unregister(model_), Succeeds());
    EXPECT_EQ(takeSnapshot(), 0U);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
