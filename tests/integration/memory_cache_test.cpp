// Packages in memory and a directory of compiled networks.

#include <gmock/gmock.h>

#include <filesystem>

#include "integration/memory_package_test.h"

#ifdef QUAVIN_ENGINE_IS_ADAPTER  // other engines need not be able to export networks

namespace VelmoraQuavin::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::SizeIs;

class MemoryCacheTest : public MemoryPackageTest {
protected:
    MemoryCacheTest() { options_.cacheDirectory = cache_.text(); }

    // The names of the entries.
    std::vector<std::string> entries() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(cache_.path())) {
            names.push_back(entry.path().filename().u8string());
        }
        return names;
    }
    std::string entry() const {
        EXPECT_THAT(entries(), SizeIs(1));
        return entries().at(0);
    }
    void age() const {
        fs::last_write_time(cache_.path() / entry(),
                            fs::file_time_type::clock::now() - std::chrono::hours(24));
    }
    // Whether the only entry has not been written since age().
    bool isOld() const {
        return fs::last_write_time(cache_.path() / entry()) <
               fs::file_time_type::clock::now() - std::chrono::hours(1);
    }

    TempDirectory cache_;
    EngineOptions options_;
};

TEST_F(MemoryCacheTest, ArchivesAndBuffersShareTheEntryOfADirectoryWithTheSameFiles) {
    writePackage(directory_, affineNetwork());
    ASSERT_THAT(client_.getModel(directory_.text(), model_, 0, QuavinModelType::Openvino, options_),
                IsOk());
    age();
    ASSERT_THAT(loadArchive(archiveOf(packageOf(affineNetwork()), "model"), options_), IsOk());
    expectAffineNumbers();
    ASSERT_THAT(loadBuffers(packageOf(affineNetwork()), options_), IsOk());
    expectAffineNumbers();
    EXPECT_TRUE(isOld());
}

TEST_F(MemoryCacheTest, SecuredComponentsShareTheirEntryToo) {
    keys_.setComponentKey(countingKey().data());
    const PackageFiles files = securedPackageOf(affineNetwork(), countingKey());
    ASSERT_THAT(loadArchive(archiveOf(files), options_), IsOk());
    expectAffineNumbers();
#ifdef _WIN32
    EXPECT_THAT(entries(), IsEmpty());
#else
    age();
    ASSERT_THAT(loadBuffers(files, options_), IsOk());
    expectAffineNumbers();
    EXPECT_TRUE(isOld());
#endif
}

TEST_F(MemoryCacheTest, OwnersAreReleasedAtOnceIfTheNetworkIsCached) {
    const auto load = [&] {
        const auto files = std::make_shared<const PackageFiles>(packageOf(affineNetwork()));
        std::vector<PackageBuffer> buffers;
        for (const auto& [name, content] : *files) {
            buffers.push_back({name, content.data(), content.size(), files});
        }
        EXPECT_THAT(client_.getModelFromBuffers(buffers, keys_, model_, QuavinModelType::Openvino,
                                                options_),
                    IsOk());
        expectAffineNumbers();
        return std::weak_ptr<const PackageFiles>(files);
    };
    load();
    age();
    EXPECT_TRUE(load().expired());
    EXPECT_TRUE(isOld());
}

class SealedCacheTest : public MemoryCacheTest {
protected:
    SealedCacheTest() { keys_.setArchiveKey(countingKey().data()); }

    const std::string archive_ = securedArchiveOf(packageOf(affineNetwork()), countingKey());
};

#ifdef _WIN32

TEST_F(SealedCacheTest, ArchivesSecuredAsAWholeAreNotCached) {
    ASSERT_THAT(loadArchive(archive_, options_), IsOk());
    expectAffineNumbers();
    EXPECT_THAT(entries(), IsEmpty());
}

#else

TEST_F(SealedCacheTest, ArchivesSecuredAsAWholeAreTakenFromTheCache) {
    ASSERT_THAT(loadArchive(archive_, options_), IsOk());
    expectAffineNumbers();
    age();
    ASSERT_THAT(loadArchive(archive_, options_), IsOk());
    expectAffineNumbers();
    EXPECT_TRUE(isOld());
}

TEST_F(SealedCacheTest, EntriesHoldNothingOfTheNetworkInPlainText) {
    ASSERT_THAT(loadArchive(archive_, options_), IsOk());
    const std::string sealed = entry();
    const std::string offsets = affineNetwork().weights().substr(4, 16);
    EXPECT_EQ(cache_.read(sealed).find(offsets), std::string::npos);
    // The plain archive has an entry of its own, which shows what there would be to find.
    keys_ = PackageKeys();
    ASSERT_THAT(loadArchive(archiveOf(packageOf(affineNetwork()), "model"), options_), IsOk());
    const auto both = entries();
    ASSERT_THAT(both, SizeIs(2));
    const std::string plain = both.at(0) == sealed ? both.at(1) : both.at(0);
    EXPECT_NE(cache_.read(plain).find(offsets), std::string::npos);
}

TEST_F(SealedCacheTest, AnotherKeyNeverGetsTheEntry) {
    ASSERT_THAT(loadArchive(archive_, options_), IsOk());
    age();
    keys_.setArchiveKey(anotherKey().data());
    EXPECT_THAT(loadArchive(archive_, options_), IsStatusWith(TAR_CHECKSUM_MISMATCH, ::testing::_));
    EXPECT_TRUE(isOld());
}

TEST_F(SealedCacheTest, AnotherKeyOfAComponentNeverGetsTheEntry) {
    PackageFiles files = packageOf(affineNetwork());
    PackageText text = describe(affineNetwork());
    text.components = {{"file", "net.xml"}, {"secured_file", "net.bin"}};
    files["manifest.json"] = text.manifest();
    files["net.bin"] = secured(affineNetwork().weights(), countingKey(), BlockFilling::kPkcs7);
    const std::string archive = securedArchiveOf(files, countingKey());
    keys_.setComponentKey(countingKey().data());
    ASSERT_THAT(loadArchive(archive, options_), IsOk());
    expectAffineNumbers();
    keys_.setComponentKey(anotherKey().data());
    ASSERT_THAT(loadArchive(archive, options_), IsOk());  // garbage for weights loads
    ASSERT_THAT(allocateInputs(), IsOk());
    EXPECT_NE(predictFloats({1, 2, 3, -4}), (std::vector<float>{2.5F, 5.F, 7.5F, -6.F}));
}

TEST_F(SealedCacheTest, TwoNetworksOfOneArchiveHaveTheirOwnEntries) {
    PackageFiles files = packageOf(affineNetwork());
    files["sum.xml"] = sumNetwork().topology();
    files["sum.bin"] = "";
    PackageText text = describe(sumNetwork());
    text.components = {{"file", "sum.xml"}, {"file", "sum.bin"}};
    ASSERT_THAT(loadArchive(securedArchiveOf(files, countingKey()), options_), IsOk());
    files["manifest.json"] = text.manifest();
    ASSERT_THAT(loadArchive(securedArchiveOf(files, countingKey()), options_), IsOk());
    EXPECT_THAT(entries(), SizeIs(2));
    ASSERT_THAT(allocateInputs(), IsOk());
    EXPECT_THAT(predictFloats({1, 2}), ElementsAre(2.F, 4.F));
}

#endif

}  // namespace
}  // namespace VelmoraQuavin::testing

#endif
