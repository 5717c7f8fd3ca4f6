// Loading packages from C: from directories, archives and buffers, plain and secured, with options.

#include <future>

#include "integration/c/c_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StrEq;

using Floats = std::vector<float>;

// The affine network's y = 2 x + (0.5, 1, 1.5, 2)
const Floats kInput = {1, 2, 3, -4};
const Floats kOutput = {2.5F, 5, 7.5F, -6};

class CLoading : public CInterface {
protected:
    CLoading() : package_(affineNetwork()) { writePackage(directory_, affineNetwork()); }

    // The options with a key for all secured components.
    void useComponentKey(const CryptoKey& key) {
        key_ = key;
        keys_.component_key = key_.data();
        options_.keys = &keys_;
    }

    const PackageInMemory package_;
    CryptoKey key_{};
    quavin_engine_options engine_ = QUAVIN_ENGINE_OPTIONS_INIT;
    quavin_keys keys_ = QUAVIN_KEYS_INIT;
    quavin_load_options options_ = QUAVIN_LOAD_OPTIONS_INIT;
};

TEST_F(CLoading, ADirectoryPredicts) {
    ASSERT_THAT(load(), Succeeds());
    EXPECT_EQ(predictFloats(model_, kInput), kOutput);
}

TEST_F(CLoading, AnArchivePredicts) {
    std::string archive = package_.archive();
    ASSERT_THAT(quavin_load_archive(archive.data(), archive.size(), nullptr, &model_), Succeeds());
    archive.assign(archive.size(), '\0');  // not needed any more
    EXPECT_EQ(predictFloats(model_, kInput), kOutput);
}

TEST_F(CLoading, BuffersPredict) {
    const auto buffers = package_.buffers();
    ASSERT_THAT(quavin_load_buffers(buffers.data(), buffers.size(), nullptr, &model_), Succeeds());
    EXPECT_EQ(predictFloats(model_, kInput), kOutput);
}

TEST_F(CLoading, ASecuredDirectoryPredictsWithItsKey) {
    writeSecuredPackage(directory_, affineNetwork(), countingKey());
    useComponentKey(countingKey());
    ASSERT_THAT(load(&options_), Succeeds());
    EXPECT_EQ(predictFloats(model_, kInput), kOutput);
    useComponentKey(anotherKey());
    EXPECT_EQ(load(&options_), QUAVIN_FILE_ERROR);
    EXPECT_EQ(model_, nullptr);
}

TEST_F(CLoading, ASingleComponentsKeyComesBeforeTheCommonOne) {
    writeSecuredPackage(directory_, affineNetwork(), countingKey());
    directory_.write("net.bin", secured(package_.weights, anotherKey(), BlockFilling::kPkcs7));
    useComponentKey(countingKey());
    const CryptoKey weightsKey = anotherKey();
    const quavin_component_key single[] = {{"net.bin", weightsKey.data()}};
    keys_.component_keys = single;
    keys_.component_key_count = 1;
    ASSERT_THAT(load(&options_), Succeeds());
    EXPECT_EQ(predictFloats(model_, kInput), kOutput);
}

TEST_F(CLoading, ASecuredArchivePredictsWithItsKey) {
    const std::string archive = secured(package_.archive(), countingKey(), BlockFilling::kPkcs7);
    const CryptoKey key = countingKey();
    keys_.archive_key = key.data();
    options_.keys = &keys_;
    ASSERT_THAT(quavin_load_archive(archive.data(), archive.size(), &options_, &model_),
                Succeeds());
    EXPECT_EQ(predictFloats(model_, kInput), kOutput);
}

TEST_F(CLoading, AnArchiveKeyWithoutAnArchiveIsRefused) {
    const CryptoKey key = countingKey();
    keys_.archive_key = key.data();
    options_.keys = &keys_;
    const auto refused = FailsWith(QUAVIN_INVALID_ARGUMENTS,
                                   StrEq("quavin_keys: only an archive has an archive key"));
    EXPECT_THAT(load(&options_), refused);
    const auto buffers = package_.buffers();
    EXPECT_THAT(quavin_load_buffers(buffers.data(), buffers.size(), &options_, &model_), refused);
}

TEST_F(CLoading, AComponentKeyNeedsAPathAndAKey) {
    const CryptoKey key = countingKey();
    quavin_component_key single = {nullptr, key.data()};
    keys_.component_key_count = 1;
    options_.keys = &keys_;
    EXPECT_THAT(load(&options_),
                FailsWith(QUAVIN_INVALID_ARGUMENTS, StrEq("\"component_keys\" is null")));
    keys_.component_keys = &single;
    EXPECT_THAT(load(&options_), FailsWith(QUAVIN_INVALID_ARGUMENTS, StrEq("\"path\" is null")));
    single = {"net.bin", nullptr};
    EXPECT_EQ(load(&options_), QUAVIN_INVALID_ARGUMENTS);
}

TEST_F(CLoading, AnEmptyPathIsRefusedWithAndWithoutKeys) {
    const auto refused =
        FailsWith(QUAVIN_INVALID_MODEL_PATH, StrEq("modelpath specified is empty"));
    EXPECT_THAT(quavin_load_directory("", nullptr, &model_), refused);
    useComponentKey(countingKey());
    EXPECT_THAT(quavin_load_directory("", &options_, &model_), refused);
}

TEST_F(CLoading, AFailedLoadGivesNoHandle) {
    directory_.write("net.xml", "no network");
    auto* const other = reinterpret_cast<quavin_model*>(this);
    quavin_model* model = other;
    EXPECT_THAT(quavin_load_directory(directory_.text().c_str(), nullptr, &model),
                FailsWith(QUAVIN_FILE_ERROR, HasSubstr("")));
    EXPECT_EQ(model, nullptr);
    model = other;
    EXPECT_EQ(quavin_load_archive("no archive", 10, nullptr, &model), QUAVIN_INVALID_ARGUMENTS);
    EXPECT_EQ(model, nullptr);
    model = other;
    EXPECT_EQ(quavin_load_buffers(nullptr, 0, nullptr, &model), QUAVIN_INVALID_ARGUMENTS);
    EXPECT_EQ(model, nullptr);
}

TEST_F(CLoading, EngineOptionsReachTheEngine) {
    engine_.threads = 1;
    options_.engine = &engine_;
    ASSERT_THAT(load(&options_), Succeeds());
    quavin_engine_info* info = nullptr;
    quavin_engine_details details = QUAVIN_ENGINE_DETAILS_INIT;
    ASSERT_THAT(quavin_model_get_engine_info(model_, &info), Succeeds());
    ASSERT_THAT(quavin_engine_info_get(info, &details), Succeeds());
    EXPECT_EQ(details.threads, 1);
    EXPECT_STREQ(details.precision, "f32");
    EXPECT_STREQ(details.device, "CPU");
    EXPECT_THAT(details.runtime_version, ::testing::Not(StrEq("")));
    ASSERT_GT(details.capability_count, 0U);
    const std::vector<std::string> capabilities(details.capabilities,
                                                details.capabilities + details.capability_count);
    EXPECT_THAT(capabilities, ::testing::Contains("FP32"));
    EXPECT_THAT(quavin_engine_info_release(info), Succeeds());
}

TEST_F(CLoading, TheConfigurationsEngineOptionsHoldForEveryLoadWithoutItsOwn) {
    ASSERT_THAT(quavin_terminate(), Succeeds());
    engine_.threads = -1;
    quavin_config config = QUAVIN_CONFIG_INIT;
    config.engine = &engine_;
    ASSERT_THAT(quavin_init(&config), Succeeds());
    const auto refused = FailsWith(QUAVIN_INVALID_ARGUMENTS, HasSubstr("threads"));
    const std::string archive = package_.archive();
    const auto buffers = package_.buffers();
    EXPECT_THAT(load(), refused);
    EXPECT_THAT(quavin_load_archive(archive.data(), archive.size(), nullptr, &model_), refused);
    EXPECT_THAT(quavin_load_buffers(buffers.data(), buffers.size(), nullptr, &model_), refused);
    quavin_engine_info* info = nullptr;
    EXPECT_THAT(quavin_get_engine_info(&info), refused);

    const quavin_engine_options own = QUAVIN_ENGINE_OPTIONS_INIT;
    options_.engine = &own;
    EXPECT_THAT(load(&options_), Succeeds());
}

TEST_F(CLoading, EngineOptionsWithoutAMeaningAreRefused) {
    options_.engine = &engine_;
    engine_.precision = 7;
    EXPECT_EQ(load(&options_), QUAVIN_INVALID_ARGUMENTS);
    engine_.precision = QUAVIN_PRECISION_FASTEST;
    engine_.hint = -1;
    EXPECT_EQ(load(&options_), QUAVIN_INVALID_ARGUMENTS);
    engine_.hint = QUAVIN_HINT_THROUGHPUT;
    engine_.map_weights = 1;
    EXPECT_THAT(load(&options_), Succeeds());
}

TEST_F(CLoading, ACacheDirectoryReceivesTheCompiledNetwork) {
    const TempDirectory cache;
    const std::string text = cache.text();
    engine_.cache_directory = text.c_str();
    options_.engine = &engine_;
    ASSERT_THAT(load(&options_), Succeeds());
    EXPECT_FALSE(std::filesystem::is_empty(cache.path()));
}

TEST_F(CLoading, ReservedMembersMustBeZero) {
    options_.reserved = 1;
    EXPECT_THAT(load(&options_), FailsWith(QUAVIN_INVALID_ARGUMENTS,
                                           StrEq("quavin_load_options: \"reserved\" is not zero")));
    ASSERT_THAT(quavin_terminate(), Succeeds());
    quavin_config config = QUAVIN_CONFIG_INIT;
    config.reserved = 1;
    EXPECT_THAT(quavin_init(&config), FailsWith(QUAVIN_INVALID_ARGUMENTS,
                                                StrEq("quavin_config: \"reserved\" is not zero")));
}

TEST_F(CLoading, AnUnloadedModelDoesNotPredictAndKeepsItsTexts) {
    ASSERT_THAT(load(), Succeeds());
    ASSERT_THAT(quavin_unload(model_), Succeeds());
    const void* const inputs[] = {kInput.data()};
    const std::size_t sizes[] = {16};
    quavin_outputs* outputs = nullptr;
    EXPECT_THAT(quavin_predict(model_, inputs, sizes, 1, &outputs),
                FailsWith(QUAVIN_MODEL_NOT_LOADED, StrEq("There is no model loaded")));
    quavin_model* clone = nullptr;
    EXPECT_THAT(quavin_clone(model_, &clone),
                FailsWith(QUAVIN_MODEL_NOT_LOADED, StrEq("There is no model loaded")));
    EXPECT_STREQ(inputOf(model_, 0).name, "x");
}

TEST_F(CLoading, ClonesPredictOnThreadsOfTheirOwn) {
    engine_.hint = QUAVIN_HINT_THROUGHPUT;
    options_.engine = &engine_;
    ASSERT_THAT(load(&options_), Succeeds());
    quavin_model* clone = nullptr;
    ASSERT_THAT(quavin_clone(model_, &clone), Succeeds());
    ASSERT_NE(clone, model_);
    const auto wrongPredictions = [](quavin_model* model, float first) {
        int wrong = 0;
        for (int i = 0; i < 1000; ++i) {
            const float x = first + static_cast<float>(i);  // small integers: the sums are exact
            const Floats y = {2 * x + 0.5F, 2 * x + 1, 2 * x + 1.5F, 2 * x + 2};
            wrong += predictFloats(model, {x, x, x, x}) == y ? 0 : 1;
        }
        return wrong;
    };
    auto other = std::async(std::launch::async, wrongPredictions, clone, -3000.F);
    EXPECT_EQ(wrongPredictions(model_, 1000), 0);
    EXPECT_EQ(other.get(), 0);
    release(model_);
    EXPECT_EQ(predictFloats(clone, kInput), kOutput);
    release(clone);
}

TEST_F(CLoading, AHandleMayBeReleasedWhileItsModelPredicts) {
    for (int round = 0; round < 20; ++round) {
        ASSERT_THAT(load(), Succeeds());
        std::promise<void> begun;
        auto predictions = std::async(std::launch::async, [&] {
            const void* const inputs[] = {kInput.data()};
            const std::size_t sizes[] = {16};
            Floats y(4);
            void* const outputs[] = {y.data()};
            begun.set_value();
            quavin_status status = QUAVIN_SUCCESS;
            while (status == QUAVIN_SUCCESS) {
                status = quavin_predict_into(model_, inputs, sizes, 1, outputs, sizes, 1);
                EXPECT_TRUE(status != QUAVIN_SUCCESS || y == kOutput);
            }
            return status;
        });
        begun.get_future().wait();
        EXPECT_THAT(quavin_model_release(model_), Succeeds());
        EXPECT_EQ(predictions.get(), QUAVIN_INVALID_ARGUMENTS);
        model_ = nullptr;
    }
}

}  // namespace
}  // namespace VelmoraQuavin::testing
