// How the options of a host reach the engine, and what becomes of those that it refuses.

#include "engine/engine.h"
#include "engine/openvino/openvino_engine_info.h"
#include "faulty_model_test.h"
#include "quavin/client.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using RequestedPrecision = EngineOptions::Precision;
using Hint = EngineOptions::Hint;

class EngineOptionsTest : public FaultyModelTest {
protected:
    void supports(const std::vector<std::string>& capabilities) {
        engine_.metrics[{"CPU", "OPTIMIZATION_CAPABILITIES"}] = capabilities;
    }
    QuavinStatus loadWith(const EngineOptions& options) {
        model_ = std::make_shared<OpenModel>("m", Device(), options);
        return load();
    }
    std::map<std::string, std::string> configFor(const EngineOptions& options) {
        EXPECT_THAT(loadWith(options), IsOk());
        return engine_.loadings.back().config;
    }

    EngineOptions options_;
};

TEST_F(EngineOptionsTest, WithoutOptionsTheEngineIsGivenNone) {
    supports({"FP32", "BF16"});
    EXPECT_THAT(configFor(options_), IsEmpty());
}

TEST_F(EngineOptionsTest, MappingIsNoneOfTheEnginesSettings) {
    options_.mapWeights = true;
    EXPECT_THAT(configFor(options_), IsEmpty());
}

TEST_F(EngineOptionsTest, ThreadsArePassedOn) {
    options_.threads = 3;
    EXPECT_THAT(configFor(options_), ElementsAre(Pair("CPU_THREADS_NUM", "3")));
}

TEST_F(EngineOptionsTest, ThroughputAsksForTheEnginesChoiceOfStreams) {
    options_.hint = Hint::Throughput;
    EXPECT_THAT(configFor(options_),
                ElementsAre(Pair("CPU_THROUGHPUT_STREAMS", "CPU_THROUGHPUT_AUTO")));
}

TEST_F(EngineOptionsTest, AFasterPrecisionIsOnlyAskedForWhereThereIsOne) {
    options_.precision = RequestedPrecision::Fastest;
    EXPECT_THAT(configFor(options_), IsEmpty());  // the engine does not report what it supports
    supports({"FP32", "INT8"});
    EXPECT_THAT(configFor(options_), IsEmpty());
    supports({"FP32", "BF16"});
    EXPECT_THAT(configFor(options_), ElementsAre(Pair("ENFORCE_BF16", "YES")));
    supports({"FP16", "FP32"});
    EXPECT_THAT(configFor(options_), ElementsAre(Pair("ENFORCE_BF16", "YES")));
}

TEST_F(EngineOptionsTest, TheEnginesRefusalNamesTheOption) {
    options_.threads = 7;
    options_.hint = Hint::Throughput;
    engine_.loading = {InferenceEngine::PARAMETER_MISMATCH, "CPU_THREADS_NUM = 7: too many"};
    try {
        loadWith(options_);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const InvalidArgumentsException& refusal) {
        EXPECT_STREQ(refusal.what(),
                     "The engine refuses EngineOptions::threads: CPU_THREADS_NUM = 7: too many");
    }
    EXPECT_THAT(predict(), IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
}

TEST_F(EngineOptionsTest, OtherMismatchesAreNotBlamedOnAnOption) {
    options_.threads = 7;
    engine_.loading = {InferenceEngine::PARAMETER_MISMATCH, "layer 3 does not fit"};
    EXPECT_THROW(loadWith(options_), InferenceEngine::ParameterMismatch);
}

TEST_F(EngineOptionsTest, TheClientsInfoIsThatOfItsOptions) {
    options_.threads = 2;
    internal::openVinoEngineInfo(options_);
    EXPECT_THAT(engine_.loadings.back().config, ElementsAre(Pair("CPU_THREADS_NUM", "2")));
}

EngineOptions optionsOf(RequestedPrecision precision, int threads, Hint hint) {
    EngineOptions options;
    options.precision = precision;
    options.threads = threads;
    options.hint = hint;
    return options;
}

TEST(EngineOptionsCheck, AcceptsEveryValueWithAMeaning) {
    for (const RequestedPrecision precision :
         {RequestedPrecision::Single, RequestedPrecision::Fastest}) {
        for (const Hint hint : {Hint::Latency, Hint::Throughput}) {
            for (const int threads : {0, 1, 1024}) {
                EXPECT_NO_THROW(internal::requireMeaningful(optionsOf(precision, threads, hint)));
            }
        }
    }
}

TEST(EngineOptionsCheck, NamesTheOptionWithoutAMeaning) {
    const auto refusalOf = [](const EngineOptions& options) -> std::string {
        try {
            internal::requireMeaningful(options);
        } catch (const InvalidArgumentsException& refusal) {
            return refusal.what();
        }
        return "none";
    };
    EXPECT_EQ(refusalOf(optionsOf(static_cast<RequestedPrecision>(2), 0, Hint::Latency)),
              "EngineOptions::precision is 2, but must be Single (0) or Fastest (1)");
    EXPECT_EQ(refusalOf(optionsOf(RequestedPrecision::Single, -1, Hint::Latency)),
              "EngineOptions::threads is -1, but must be from 0 to 1024");
    EXPECT_EQ(refusalOf(optionsOf(RequestedPrecision::Single, 1025, Hint::Latency)),
              "EngineOptions::threads is 1025, but must be from 0 to 1024");
    EXPECT_EQ(refusalOf(optionsOf(RequestedPrecision::Single, 0, static_cast<Hint>(9))),
              "EngineOptions::hint is 9, but must be Latency (0) or Throughput (1)");
}

}  // namespace
}  // namespace VelmoraQuavin::testing
