// Loading through a directory of compiled networks. A load that compiles writes an entry; one that
// takes its network from the cache leaves the entry as it is.

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

#include "integration/model_test.h"
#include "support/recording_log_processor.h"
#include "support/secured_file.h"

#ifdef QUAVIN_ENGINE_IS_ADAPTER  // other engines need not be able to export networks

namespace VelmoraQuavin::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

QuavinConfig configWith(const std::shared_ptr<ILogProcessor>& logger) {
    QuavinConfig config;
    config.SetLogger(logger);
    config.SetDiagnostics(true);
    return config;
}

// y = factor x + (0.5, 1, 1.5, 2) of four floats. The names are of the length of the affine
// network's.
IrNetwork networkWith(float factor) {
    IrNetwork network("affine");
    const auto x = network.input("x", {1, 4});
    const auto scaled = network.layer(
        "Multiply", "scaled", {x, network.constant<float>("factor", {1, 1}, {factor})}, {1, 4});
    const auto offset = network.constant<float>("offset", {1, 4}, {0.5F, 1, 1.5F, 2});
    network.output(network.layer("Add", "y", {scaled, offset}, {1, 4}));
    return network;
}

class CompiledCacheTest : public ModelTest {
protected:
    // Exact in single precision, as are the results, but not in half precision or bfloat16.
    static constexpr float kFactor = 1.000244140625F;

    CompiledCacheTest() : CompiledCacheTest(std::make_shared<RecordingLogProcessor>()) {
        options_.cacheDirectory = cache_.text();
        writePackage(directory_, networkWith(kFactor));
    }

    QuavinStatus loadCached() {
        return client_.getModel(directory_.text(), model_, 0, QuavinModelType::Openvino, options_);
    }
    QuavinStatus loadSecured(const CryptoKey& topologyKey, const CryptoKey& weightsKey) {
        const auto metadata = readManifest();
        auto& components = metadata->getTargets().at(QuavinModelType::Openvino).components;
        components.at(0).setCryptoKey(topologyKey.data());
        components.at(1).setCryptoKey(weightsKey.data());
        return client_.getModel(metadata, model_, QuavinModelType::Openvino, options_);
    }
    std::vector<float> predicted() {
        if (!allocateInputs().ok()) {
            ADD_FAILURE() << "no inputs";
            return {};
        }
        return predictFloats({1.25F, -2.7182817F, 3.1415927F, 1e-3F});
    }

    std::vector<fs::path> entries() const {
        std::vector<fs::path> found;
        for (const auto& entry : fs::directory_iterator(cache_.path())) {
            found.push_back(entry.path());
        }
        return found;
    }
    fs::path entry() const {
        const auto found = entries();
        EXPECT_THAT(found, SizeIs(1));
        return found.at(0);
    }
    std::string bytesOf(const fs::path& path) const {
        return cache_.read(path.filename().u8string());
    }
    void overwrite(const fs::path& path, std::string_view bytes) const {
        cache_.write(path.filename().u8string(), bytes);
    }

    // Loads; returns whether the cache had the network, which is whether no entry was written.
    bool hits() {
        const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(24);
        const auto before = entries();
        for (const fs::path& path : before) {
            fs::last_write_time(path, longAgo);
        }
        EXPECT_THAT(loadCached(), IsOk());
        const auto after = entries();
        return !before.empty() && after.size() == before.size() &&
               std::all_of(after.begin(), after.end(), [&](const fs::path& path) {
                   return fs::last_write_time(path) < longAgo + std::chrono::hours(1);
               });
    }

    const std::shared_ptr<RecordingLogProcessor> recorder_;
    TempDirectory cache_;
    EngineOptions options_;

private:
    explicit CompiledCacheTest(const std::shared_ptr<RecordingLogProcessor>& recorder)
        : ModelTest(configWith(recorder)), recorder_(recorder) {}
};

TEST_F(CompiledCacheTest, NothingIsWrittenWithoutADirectory) {
    options_.cacheDirectory = "";
    ASSERT_THAT(loadCached(), IsOk());
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(CompiledCacheTest, PredictionsAreTheSameBitForBit) {
    ASSERT_THAT(load(), IsOk());
    const auto uncached = predicted();
    EXPECT_FALSE(hits());
    EXPECT_EQ(predicted(), uncached);
    EXPECT_TRUE(hits());
    EXPECT_EQ(predicted(), uncached);
    EXPECT_THAT(recorder_->messages(), IsEmpty());
}

TEST_F(CompiledCacheTest, AModelFromTheCacheReportsTheSameEngine) {
    EXPECT_FALSE(hits());
    EngineInfo compiled;
    ASSERT_THAT(model_->getEngineInfo(compiled), IsOk());
    EXPECT_TRUE(hits());
    EngineInfo imported;
    ASSERT_THAT(model_->getEngineInfo(imported), IsOk());
    EXPECT_EQ(imported.precision, "f32");
    EXPECT_EQ(imported.precision, compiled.precision);
    EXPECT_EQ(imported.threads, compiled.threads);
    EXPECT_EQ(imported.streams, compiled.streams);
}

TEST_F(CompiledCacheTest, OptionsReachANetworkFromTheCache) {
    options_.threads = 1;
    options_.precision = EngineOptions::Precision::Fastest;
    EXPECT_FALSE(hits());
    EngineInfo compiled;
    ASSERT_THAT(model_->getEngineInfo(compiled), IsOk());
    model_.reset();
    EXPECT_TRUE(hits());
    EngineInfo imported;
    ASSERT_THAT(model_->getEngineInfo(imported), IsOk());
    EXPECT_EQ(imported.threads, 1);
    EXPECT_EQ(imported.precision, compiled.precision);
}

TEST_F(CompiledCacheTest, ChangedWeightsAreCompiled) {
    EXPECT_FALSE(hits());
    writePackage(directory_, networkWith(2));
    EXPECT_FALSE(hits());
    EXPECT_EQ(predicted().at(0), 3.0F);
    EXPECT_THAT(entries(), SizeIs(2));
}

TEST_F(CompiledCacheTest, AChangedTopologyIsCompiled) {
    EXPECT_FALSE(hits());
    directory_.write("net.xml", networkWith(kFactor).topology() + "\n");
    EXPECT_FALSE(hits());
    EXPECT_THAT(entries(), SizeIs(2));
}

TEST_F(CompiledCacheTest, OtherOptionsAreCompiled) {
    EXPECT_FALSE(hits());
    const EngineOptions original = options_;
    options_.threads = 1;
    EXPECT_FALSE(hits());
    options_ = original;
    options_.hint = EngineOptions::Hint::Throughput;
    EXPECT_FALSE(hits());
    EXPECT_THAT(entries(), SizeIs(3));
    options_ = original;
    EXPECT_TRUE(hits());
}

TEST_F(CompiledCacheTest, MappedWeightsShareTheEntry) {
    EXPECT_FALSE(hits());
    options_.mapWeights = true;
    EXPECT_TRUE(hits());
}

TEST_F(CompiledCacheTest, APackageElsewhereWithTheSameFilesSharesTheEntry) {
    EXPECT_FALSE(hits());
    TempDirectory copy;
    writePackage(copy, networkWith(kFactor));
    ASSERT_THAT(client_.getModel(copy.text(), model_, 0, QuavinModelType::Openvino, options_),
                IsOk());
    EXPECT_THAT(entries(), SizeIs(1));
}

TEST_F(CompiledCacheTest, EntriesThatAreDamagedAnywhereAreReplaced) {
    ASSERT_THAT(load(), IsOk());
    const auto expected = predicted();
    EXPECT_FALSE(hits());
    const std::string whole = bytesOf(entry());
    // In the header, its seal, the ports, and the engine's own part.
    for (const std::size_t position :
         {std::size_t{0}, std::size_t{9}, std::size_t{11}, std::size_t{20}, std::size_t{40},
          std::size_t{80}, whole.size() / 2, whole.size() - 1}) {
        std::string damaged = whole;
        damaged[position] = static_cast<char>(damaged[position] ^ 0x10);
        overwrite(entry(), damaged);
        EXPECT_FALSE(hits()) << position;
        EXPECT_EQ(predicted(), expected) << position;
        EXPECT_NE(bytesOf(entry()), damaged) << position;
    }
    EXPECT_TRUE(hits());
}

TEST_F(CompiledCacheTest, TruncatedEmptyAndForeignEntriesAreReplaced) {
    EXPECT_FALSE(hits());
    const std::string whole = bytesOf(entry());
    for (const std::string& other :
         {std::string(), whole.substr(0, 64), whole.substr(0, whole.size() - 1), whole + '\0',
          std::string("#!/bin/sh\n")}) {
        overwrite(entry(), other);
        EXPECT_FALSE(hits()) << other.size();
    }
    EXPECT_TRUE(hits());
}

TEST_F(CompiledCacheTest, AnotherNetworksEntryIsNotUsed) {
    ASSERT_FALSE(hits());
    const fs::path first = entry();
    writePackage(directory_, networkWith(2));
    ASSERT_FALSE(hits());
    const auto both = entries();
    const fs::path second = both.at(0) == first ? both.at(1) : both.at(0);
    overwrite(second, bytesOf(first));
    EXPECT_FALSE(hits());
    EXPECT_EQ(predicted().at(0), 3.0F);
}

TEST_F(CompiledCacheTest, ADirectoryUnderTheEntrysNameDoesNotDisturb) {
    ASSERT_FALSE(hits());
    const fs::path path = entry();
    fs::remove(path);
    fs::create_directory(path);
    recorder_->clear();
    EXPECT_THAT(loadCached(), IsOk());
    EXPECT_EQ(predicted().at(0), 1.25F * kFactor + 0.5F);
    EXPECT_FALSE(recorder_->messages().empty());
}

TEST_F(CompiledCacheTest, AMissingDirectoryIsReportedOnceAndNotCreated) {
    options_.cacheDirectory = cache_.entry("missing");
    EXPECT_THAT(loadCached(), IsOk());
    EXPECT_EQ(predicted().at(0), 1.25F * kFactor + 0.5F);
    EXPECT_THAT(recorder_->messages(),
                ElementsAre(AllOf(HasSubstr("loading the package \"" + directory_.text() +
                                            "\" with the cache \""),
                                  HasSubstr("missing\": "))));
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(CompiledCacheTest, ADirectoryThatIsNotUtf8IsReportedOnce) {
    options_.cacheDirectory = String("\xFF\xFE");
    EXPECT_THAT(loadCached(), IsOk());
    EXPECT_THAT(recorder_->messages(), SizeIs(1));
}

TEST_F(CompiledCacheTest, ADirectoryWithAnyCharactersWorks) {
    const TempDirectory here;
    const fs::path odd = here.path() / fs::u8path("m\xC3\xBCll \xE6\xA8\xA1\xE5\x9E\x8B");
    fs::create_directory(odd);
    options_.cacheDirectory = odd.u8string();
    ASSERT_THAT(loadCached(), IsOk());
    ASSERT_THAT(loadCached(), IsOk());
    EXPECT_EQ(predicted().at(0), 1.25F * kFactor + 0.5F);
    EXPECT_THAT(recorder_->messages(), IsEmpty());
    EXPECT_EQ(std::distance(fs::directory_iterator(odd), fs::directory_iterator()), 1);
}

TEST_F(CompiledCacheTest, TheOldestEntriesMakeRoom) {
    ASSERT_FALSE(hits());
    const fs::path oldest = entry();
    const auto size = fs::file_size(oldest);
    writePackage(directory_, networkWith(2));
    ASSERT_FALSE(hits());
    fs::last_write_time(oldest, fs::file_time_type::clock::now() - std::chrono::hours(48));
    options_.cacheSizeLimit = 2 * size + size / 2;
    writePackage(directory_, networkWith(3));
    EXPECT_THAT(loadCached(), IsOk());
    EXPECT_THAT(entries(), SizeIs(2));
    EXPECT_FALSE(fs::exists(oldest));
}

TEST_F(CompiledCacheTest, AnEntryLargerThanTheLimitIsNotWritten) {
    options_.cacheSizeLimit = 100;
    EXPECT_THAT(loadCached(), IsOk());
    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_THAT(recorder_->messages(), SizeIs(1));
}

TEST_F(CompiledCacheTest, UnloadingAndLoadingAgainTakesTheNetworkFromTheCache) {
    ASSERT_FALSE(hits());
    ASSERT_TRUE(hits());
    const auto metadata = model_->getMetadata();
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    Features outputs;
    EXPECT_THAT(model_->predict({}, outputs),
                IsStatus(MODEL_NOT_LOADED, "There is no model loaded"));
    ASSERT_THAT(model_->load(metadata), IsOk());
    EXPECT_EQ(predicted().at(0), 1.25F * kFactor + 0.5F);
}

TEST_F(CompiledCacheTest, LoadingAgainWithoutUnloadingKeepsTheNetwork) {
    ASSERT_FALSE(hits());
    ASSERT_TRUE(hits());
    fs::remove(directory_.path() / "net.xml");
    fs::remove(directory_.path() / "net.bin");
    ASSERT_THAT(model_->load(model_->getMetadata()), IsOk());
    EXPECT_EQ(predicted().at(0), 1.25F * kFactor + 0.5F);
}

TEST_F(CompiledCacheTest, APredictionsPrecisionIsTakenWhenTheModelIsLoadedAgain) {
    ASSERT_FALSE(hits());
    ASSERT_TRUE(hits());
    const auto bytes = featureOf<std::int8_t>("x", {1, 4}, DataType::INT8, {2, 0, 0, 0});
    Features outputs;
    EXPECT_THROW((void)model_->predict({bytes}, outputs), MLFrameworkException);
    ASSERT_THAT(model_->load(model_->getMetadata()), IsOk());
    ASSERT_THAT(model_->predict({bytes}, outputs), IsOk());
    EXPECT_EQ(valuesOf<float>(outputs.at(0)).at(0), 2 * kFactor + 0.5F);
    // That network is not the one in the cache.
    ASSERT_TRUE(hits());
    EXPECT_EQ(predicted().at(0), 1.25F * kFactor + 0.5F);
}

TEST_F(CompiledCacheTest, ModelsFromTheCacheAreRegisteredAndClonedLikeOthers) {
    ASSERT_FALSE(hits());
    ASSERT_THAT(client_.getModel(directory_.text(), model_, Device(), 0, options_), IsOk());
    EXPECT_THAT(client_.queryRuntimeStatus().getLoadedModels(), ElementsAre(model_));
    std::shared_ptr<QuavinModel> clone;
    ASSERT_THAT(client_.cloneModel(model_, clone), IsOk());
    const auto expected = predicted();
    ASSERT_THAT(client_.getModelManager().unloadModel(model_), IsOk());
    model_ = clone;  // the last one over the network
    EXPECT_EQ(predicted(), expected);
}

TEST_F(CompiledCacheTest, DescribingANetworkNeedsNoCache) {
    ASSERT_FALSE(hits());
    ASSERT_TRUE(hits());
    std::vector<ModelFeatureDescriptor> inputs;
    std::vector<ModelFeatureDescriptor> outputs;
    ASSERT_THAT(describeNetwork(*model_->getMetadata(), inputs, outputs), IsOk());
    EXPECT_THAT(inputs, SizeIs(1));
}

TEST_F(CompiledCacheTest, ANetworkThatCannotBeReadFailsAsWithoutACache) {
    directory_.write("net.xml", "no network at all");
    const QuavinStatus cached = loadCached();
    const QuavinStatus uncached = load();
    EXPECT_EQ(cached.getCode(), FILE_ERROR);
    EXPECT_EQ(cached.getCode(), uncached.getCode());
    EXPECT_EQ(cached.getDescription(), uncached.getDescription());
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(CompiledCacheTest, MissingFilesFailAsWithoutACacheEvenIfTheyWereCached) {
    ASSERT_FALSE(hits());
    fs::remove(directory_.path() / "net.bin");
    recorder_->clear();
    const QuavinStatus cached = loadCached();
    EXPECT_THAT(recorder_->messages(), SizeIs(1));
    const QuavinStatus uncached = load();
    EXPECT_EQ(cached.getCode(), FILE_ERROR);
    EXPECT_EQ(cached.getDescription(), uncached.getDescription());
}

#ifdef _WIN32

TEST_F(CompiledCacheTest, SecuredNetworksAreNotCachedAndReportedOnce) {
    writeSecuredPackage(directory_, networkWith(kFactor), countingKey());
    EXPECT_THAT(loadSecured(countingKey(), countingKey()), IsOk());
    EXPECT_EQ(predicted().at(0), 1.25F * kFactor + 0.5F);
    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_THAT(recorder_->messages(),
                ElementsAre(HasSubstr("secured networks cannot be cached on this system")));
}

#else

class SecuredCacheTest : public CompiledCacheTest {
protected:
    SecuredCacheTest() { writeSecuredPackage(directory_, networkWith(kFactor), countingKey()); }

    bool securedHits() {
        const auto before = fs::last_write_time(entry()) - std::chrono::hours(24);
        fs::last_write_time(entry(), before);
        EXPECT_THAT(loadSecured(countingKey(), countingKey()), IsOk());
        return fs::last_write_time(entry()) < before + std::chrono::hours(1);
    }
};

TEST_F(SecuredCacheTest, PredictionsAreTheSameBitForBit) {
    options_.cacheDirectory = "";
    ASSERT_THAT(loadSecured(countingKey(), countingKey()), IsOk());
    const auto uncached = predicted();
    options_.cacheDirectory = cache_.text();
    ASSERT_THAT(loadSecured(countingKey(), countingKey()), IsOk());
    EXPECT_EQ(predicted(), uncached);
    EXPECT_TRUE(securedHits());
    EXPECT_EQ(predicted(), uncached);
    EXPECT_THAT(recorder_->messages(), IsEmpty());
}

TEST_F(SecuredCacheTest, EntriesHoldNothingOfTheNetworkInPlainText) {
    ASSERT_THAT(loadSecured(countingKey(), countingKey()), IsOk());
    const fs::path secured = entry();
    const auto network = networkWith(kFactor);
    const std::string offsets = network.weights().substr(4, 16);
    EXPECT_EQ(bytesOf(secured).find(offsets), std::string::npos);
    // An entry of the same network in a plain package shows what there would be to find.
    writePackage(directory_, network);
    ASSERT_THAT(loadCached(), IsOk());
    const auto both = entries();
    ASSERT_THAT(both, SizeIs(2));
    const fs::path plain = both.at(0) == secured ? both.at(1) : both.at(0);
    EXPECT_NE(bytesOf(plain).find(offsets), std::string::npos);
}

TEST_F(SecuredCacheTest, AWrongKeyNeverGetsTheEntryAndFailsAsWithoutACache) {
    ASSERT_THAT(loadSecured(countingKey(), countingKey()), IsOk());
    const std::string before = bytesOf(entry());
    const QuavinStatus cached = loadSecured(anotherKey(), countingKey());
    const EngineOptions withCache = options_;
    options_.cacheDirectory = "";
    const QuavinStatus uncached = loadSecured(anotherKey(), countingKey());
    EXPECT_FALSE(cached.ok());
    EXPECT_EQ(cached.getCode(), uncached.getCode());
    EXPECT_EQ(cached.getDescription(), uncached.getDescription());
    options_ = withCache;
    EXPECT_EQ(bytesOf(entry()), before);
    EXPECT_TRUE(securedHits());
}

TEST_F(SecuredCacheTest, AWrongKeyOfTheWeightsAloneNeverGetsTheEntry) {
    ASSERT_THAT(loadSecured(countingKey(), countingKey()), IsOk());
    const auto right = predicted();
    options_.cacheDirectory = "";
    const QuavinStatus uncached = loadSecured(countingKey(), anotherKey());
    options_.cacheDirectory = cache_.text();
    const QuavinStatus cached = loadSecured(countingKey(), anotherKey());
    EXPECT_EQ(cached.getCode(), uncached.getCode());
    ASSERT_THAT(cached, IsOk());  // garbage for weights loads without a cache too
    EXPECT_NE(predicted(), right);
    ASSERT_THAT(loadSecured(countingKey(), countingKey()), IsOk());
    EXPECT_EQ(predicted(), right);
}

TEST_F(SecuredCacheTest, DamagedEntriesAreReplaced) {
    ASSERT_THAT(loadSecured(countingKey(), countingKey()), IsOk());
    const std::string whole = bytesOf(entry());
    for (const std::size_t position :
         {std::size_t{12}, std::size_t{40}, std::size_t{70}, whole.size() - 1}) {
        std::string damaged = whole;
        damaged[position] = static_cast<char>(damaged[position] ^ 0x01);
        overwrite(entry(), damaged);
        EXPECT_FALSE(securedHits()) << position;
        EXPECT_EQ(predicted().at(0), 1.25F * kFactor + 0.5F) << position;
    }
    EXPECT_TRUE(securedHits());
}

TEST_F(SecuredCacheTest, PlainAndSecuredPackagesOfTheSameNetworkDoNotShareEntries) {
    ASSERT_THAT(loadSecured(countingKey(), countingKey()), IsOk());
    writePackage(directory_, networkWith(kFactor));
    ASSERT_THAT(loadCached(), IsOk());
    EXPECT_THAT(entries(), SizeIs(2));
}

TEST_F(CompiledCacheTest, EntriesBelongToTheirOwnerAlone) {
    ASSERT_FALSE(hits());
    EXPECT_EQ(fs::status(entry()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(CompiledCacheTest, ADirectoryThatCannotBeWrittenToIsReportedOnce) {
    options_.cacheDirectory = "/proc/self";  // where not even root can
    EXPECT_THAT(loadCached(), IsOk());
    EXPECT_EQ(predicted().at(0), 1.25F * kFactor + 0.5F);
    EXPECT_THAT(recorder_->messages(), SizeIs(1));
}

#endif

}  // namespace
}  // namespace VelmoraQuavin::testing

#endif
