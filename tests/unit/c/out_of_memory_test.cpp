// Memory runs out at one allocation of a function after the other, in steps where there are many:
// no exception leaves any of them.

#include <algorithm>
#include <functional>
#include <set>
#include <vector>

#include "allocation_watch.h"
#include "integration/c/c_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::Contains;
using ::testing::Each;

constexpr int kMostAllocations = 100'000;
const float kInput[] = {1, 2, 3, -4};
const void* const kInputs[] = {kInput};
const std::size_t kSizes[] = {sizeof kInput};

class COutOfMemory : public CInterface {
protected:
    COutOfMemory() : package_(affineNetwork()) {
        EXPECT_THAT(loadNetwork(affineNetwork()), Succeeds());
    }

    /// Calls a function until it has enough memory; `cleanUp` runs after every call.
    static void exhaust(
        const std::function<quavin_status()>& call, const std::function<void()>& cleanUp = [] {},
        int step = 1) {
        std::set<std::string> texts;
        bool happened = true;
        for (int which = 1; happened && which < kMostAllocations; which += step) {
            SCOPED_TRACE(which);
            quavin_status status = QUAVIN_SUCCESS;
            {
                const AllocationFailure failure(which);
                status = call();
                happened = failure.happened();
            }
            if (status != QUAVIN_SUCCESS) {
                EXPECT_TRUE(happened) << quavin_last_error();
                texts.insert(quavin_last_error());
            }
            cleanUp();
        }
        EXPECT_FALSE(happened);
        EXPECT_THAT(texts, ::testing::Not(Contains("")));
        EXPECT_THAT(call(), Succeeds());
        cleanUp();
    }

    const PackageInMemory package_;
};

TEST_F(COutOfMemory, SwitchingOnSurvivesIt) {
    quavin_engine_options engine = QUAVIN_ENGINE_OPTIONS_INIT;
    engine.cache_directory = "a directory with a name too long to be kept in place";
    quavin_config config = QUAVIN_CONFIG_INIT;
    config.engine = &engine;
    config.log = [](const quavin_log_record* /*record*/, void* /*user*/) {};
    quavin_terminate();
    exhaust(
        [&] {
            const quavin_status status = quavin_init(&config);
            EXPECT_EQ(quavin_is_initialized(), status == QUAVIN_SUCCESS ? 1 : 0);
            return status;
        },
        [] { quavin_terminate(); });
}

TEST_F(COutOfMemory, LoadingADirectorySurvivesIt) {
    const std::string path = directory_.text();
    quavin_model* model = nullptr;
    exhaust([&] { return quavin_load_directory(path.c_str(), nullptr, &model); },
            [&] { release(model); }, 7);
}

TEST_F(COutOfMemory, LoadingAnArchiveSurvivesIt) {
    const std::string archive = package_.archive();
    quavin_model* model = nullptr;
    exhaust([&] { return quavin_load_archive(archive.data(), archive.size(), nullptr, &model); },
            [&] { release(model); }, 7);
}

TEST_F(COutOfMemory, LoadingBuffersSurvivesItAndReleasesEachOnce) {
    std::array<int, 3> released{};
    std::vector<quavin_buffer> buffers = package_.buffers();
    for (std::size_t i = 0; i < buffers.size(); ++i) {
        buffers[i].user = &released.at(i);
        buffers[i].release = [](void* user) { ++*static_cast<int*>(user); };
    }
    quavin_model* model = nullptr;
    exhaust([&] { return quavin_load_buffers(buffers.data(), buffers.size(), nullptr, &model); },
            [&] {
                release(model);
                EXPECT_THAT(released, Each(1));
                released.fill(0);
            });
}

TEST_F(COutOfMemory, CloningSurvivesIt) {
    quavin_model* clone = nullptr;
    exhaust([&] { return quavin_clone(model_, &clone); }, [&] { release(clone); });
}

TEST_F(COutOfMemory, PredictingSurvivesIt) {
    quavin_outputs* outputs = nullptr;
    exhaust([&] { return quavin_predict(model_, kInputs, kSizes, 1, &outputs); },
            [&] {
                EXPECT_THAT(quavin_outputs_release(outputs), Succeeds());
                outputs = nullptr;
            });
    float result[4] = {};
    void* const results[] = {result};
    exhaust([&] { return quavin_predict_into(model_, kInputs, kSizes, 1, results, kSizes, 1); });
    EXPECT_THAT(result, ::testing::ElementsAre(2.5F, 5.F, 7.5F, -6.F));
}

TEST_F(COutOfMemory, TheRegistrySurvivesIt) {
    quavin_load_options options = QUAVIN_LOAD_OPTIONS_INIT;
    options.registered = 1;
    ASSERT_THAT(load(&options), Succeeds());
    quavin_registry* registry = nullptr;
    quavin_model* model = nullptr;
    exhaust([&] { return quavin_query_registry(&registry); },
            [&] {
                EXPECT_THAT(quavin_registry_release(registry), Succeeds());
                registry = nullptr;
            });
    ASSERT_THAT(quavin_query_registry(&registry), Succeeds());
    exhaust([&] { return quavin_registry_get_model(registry, 0, &model); },
            [&] { release(model); });
    exhaust([&] { return quavin_model_set_memory(model_, 1); });
    EXPECT_THAT(quavin_registry_release(registry), Succeeds());
    EXPECT_THAT(quavin_unregister(model_), Succeeds());
}

TEST_F(COutOfMemory, EngineInfosSurviveIt) {
    quavin_engine_info* info = nullptr;
    const auto releaseInfo = [&] {
        EXPECT_THAT(quavin_engine_info_release(info), Succeeds());
        info = nullptr;
    };
    exhaust([&] { return quavin_get_engine_info(&info); }, releaseInfo);
    exhaust([&] { return quavin_model_get_engine_info(model_, &info); }, releaseInfo);
}

TEST_F(COutOfMemory, DescribingSurvivesIt) {
    const std::string path = directory_.text();
    const std::string topology = directory_.entry("net.xml");
    const std::string weights = directory_.entry("net.bin");
    const std::string archive = package_.archive();
    const std::vector<quavin_buffer> buffers = package_.buffers();
    quavin_network* network = nullptr;
    const auto releaseNetwork = [&] {
        EXPECT_THAT(quavin_network_release(network), Succeeds());
        network = nullptr;
    };
    exhaust([&] { return quavin_describe_directory(path.c_str(), nullptr, &network); },
            releaseNetwork, 3);
    exhaust([&] { return quavin_describe_files(topology.c_str(), weights.c_str(), &network); },
            releaseNetwork, 5);
    exhaust(
        [&] { return quavin_describe_archive(archive.data(), archive.size(), nullptr, &network); },
        releaseNetwork, 5);
    exhaust(
        [&] { return quavin_describe_buffers(buffers.data(), buffers.size(), nullptr, &network); },
        releaseNetwork, 5);
}

TEST_F(COutOfMemory, UnloadingSurvivesIt) {
    exhaust([&] { return quavin_unload(model_); });
}

TEST_F(COutOfMemory, DecryptingSurvivesIt) {
    const std::uint8_t secured[32] = {};
    const std::uint8_t key[16] = {};
    std::uint8_t plain[16] = {};
    exhaust([&] { return quavin_decrypt(secured, sizeof secured, key, plain, sizeof plain); });
}

TEST_F(COutOfMemory, ExtractingSurvivesIt) {
    const std::string archive = package_.archive();
    const std::string path = directory_.text();
    exhaust([&] {
        return quavin_extract_archive(archive.data(), archive.size(), nullptr, path.c_str(),
                                      nullptr, 0, nullptr);
    });
}

// The first allocations make the exception, later ones copy its text into the status.
TEST_F(COutOfMemory, AFailureKeepsItsCodeWhenThereIsNoMemoryForItsText) {
    std::vector<quavin_status> statuses;
    std::set<std::string> texts;
    bool happened = true;
    for (int which = 1; happened; ++which) {
        quavin_status status = QUAVIN_SUCCESS;
        {
            const AllocationFailure failure(which);
            status = quavin_unload(reinterpret_cast<quavin_model*>(&happened));
            happened = failure.happened();
        }
        statuses.push_back(status);
        texts.insert(quavin_last_error());
    }
    const auto first = std::find(statuses.begin(), statuses.end(), QUAVIN_INVALID_ARGUMENTS);
    EXPECT_GE(statuses.end() - first, 2);  // the last one did not lack memory
    EXPECT_EQ(std::count(statuses.begin(), first, QUAVIN_FAILURE), first - statuses.begin());
    EXPECT_EQ(std::count(first, statuses.end(), QUAVIN_INVALID_ARGUMENTS), statuses.end() - first);
    EXPECT_THAT(texts,
                ::testing::ElementsAre("This is not the handle of a model, or it was released",
                                       "std::bad_alloc"));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
