// What somebody who can write to the directory of compiled networks can do to a host that trusts
// keys.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "engine/cache/cache_seal.h"
#include "integration/signed_package_test.h"
#include "support/recording_log_processor.h"
#include "support/secured_file.h"

namespace VelmoraQuavin::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::SizeIs;

constexpr std::size_t kStartSize = sizeof(internal::HeaderStart);
constexpr std::size_t kHeaderSize = kStartSize + sizeof(internal::SealValue);
constexpr std::size_t kNameAt = 20;

// An entry with the name of one and the content of another, and the right checksum.
std::string forge(const std::string& named, const std::string& content) {
    std::string forged = content;
    forged.replace(kNameAt, kStartSize - kNameAt, named, kNameAt, kStartSize - kNameAt);
    internal::HeaderStart start;
    std::copy_n(forged.begin(), kStartSize, start.begin());
    const internal::EntryName unused({});
    internal::SealValue seal;
    auto* const bytes = reinterpret_cast<unsigned char*>(&forged[kHeaderSize]);
    EXPECT_TRUE(internal::makeChecksumSeal()->close(unused, start, bytes,
                                                    forged.size() - kHeaderSize, seal));
    std::copy(seal.begin(), seal.end(), forged.begin() + kStartSize);
    return forged;
}

class SignedCache : public SignedPackage {
protected:
    SignedCache() { options_.cacheDirectory = cache_.text(); }

    std::vector<std::string> entries() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(cache_.path())) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }
    // Loads the package with these weights, and takes the entry away that this leaves.
    std::string cachedWith(const std::string& weights, std::string& name) {
        Files files = files_;
        files.at("net.bin") = weights;
        files.swap(files_);
        EXPECT_THAT(loadCached(), IsOk());
        files.swap(files_);
        const std::vector<std::string> names = entries();
        EXPECT_THAT(names, SizeIs(1));
        name = names.at(0);
        std::ifstream file(cache_.path() / name, std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(file)), {});
        file.close();
        fs::remove(cache_.path() / name);
        return bytes;
    }
    std::vector<float> predictOnes() {
        EXPECT_THAT(allocateInputs(), IsOk());
        return predictFloats(std::vector<float>(16, 1));
    }
    static std::shared_ptr<RecordingLogProcessor> trustAndListen() {
        auto logger = std::make_shared<RecordingLogProcessor>();
        QuavinConfig config = trusting({readPem("p256")});
        config.SetLogger(logger);
        config.SetDiagnostics(true);
        QuavinClient::terminate();
        EXPECT_THAT(QuavinClient::init(config), IsOk());
        return logger;
    }

    const TempDirectory cache_;
};

TEST_F(SignedCache, AForgedEntryOfAPlainPackageIsNotUsed) {
    restart({});
    std::string name;
    std::string otherName;
    const std::string entry = cachedWith(files_.at("net.bin"), name);
    const std::vector<float> signedNumbers = predictOnes();
    std::string weights = files_.at("net.bin");
    weights.back() = static_cast<char>(weights.back() ^ 1);
    const std::string other = cachedWith(weights, otherName);
    const std::vector<float> otherNumbers = predictOnes();
    ASSERT_NE(otherNumbers, signedNumbers);
    const std::string forged = forge(entry, other);
    cache_.write(name, forged);

    ASSERT_THAT(loadCached(), IsOk());
    EXPECT_EQ(predictOnes(), otherNumbers);  // so the entry is as good as one of ours

    const auto logger = trustAndListen();
    ASSERT_THAT(loadCached(), IsOk());
    EXPECT_EQ(predictOnes(), signedNumbers);
    EXPECT_THAT(
        logger->messages(),
        ElementsAre("loading the package \"" + directory_.text() + "\" with the cache \"" +
                    cache_.text() +
                    "\": networks of plain packages are not cached while keys are trusted"));
    EXPECT_THAT(entries(), ElementsAre(name));
}

TEST_F(SignedCache, NoEntryOfAPlainPackageIsWritten) {
    ASSERT_THAT(loadCached(), IsOk());
    EXPECT_THAT(entries(), SizeIs(0));
}

TEST_F(SignedCache, EntriesOfSecuredPackagesAreWrittenAndUsed) {
    files_ = filesOf("secured");
    write(files_);
    const auto loadSecured = [this] {
        const auto metadata = readManifest();
        for (ModelComponent& component :
             metadata->getTargets().at(QuavinModelType::Openvino).components) {
            component.setCryptoKey(countingKey().data());
        }
        return client_.getModel(metadata, model_, QuavinModelType::Openvino, options_);
    };
    ASSERT_THAT(loadSecured(), IsOk());
    const auto written = entries();
    EXPECT_THAT(written, SizeIs(internal::canSealSecrets() ? 1 : 0));
    for (const std::string& name : written) {
        const auto time = fs::last_write_time(cache_.path() / name);
        ASSERT_THAT(loadSecured(), IsOk());
        expectItsNumbers();
        EXPECT_EQ(fs::last_write_time(cache_.path() / name), time);
    }
}

}  // namespace
}  // namespace VelmoraQuavin::testing
