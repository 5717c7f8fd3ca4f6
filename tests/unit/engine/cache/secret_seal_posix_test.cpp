#include <algorithm>
#include <string>

#include "allocation_watch.h"
#include "cache/cache_fixture.h"
#include "platform/aes_gcm.h"
#include "platform/hkdf.h"

namespace VelmoraQuavin::internal {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::Optional;

class SecretSealTest : public CacheFixture {
protected:
    std::string stored(const EntryName& name, const CacheSeal& seal, std::string_view content) {
        EXPECT_EQ(store(name, seal, content), "");
        return directory_.read(name.fileName());
    }

    const EntryName name_ = entryNamed("network");
};

TEST_F(SecretSealTest, IsThereOnThisSystem) {
    EXPECT_TRUE(canSealSecrets());
    EXPECT_NE(secretSealWith(7), nullptr);
    EXPECT_EQ(makeSecretSeal({}), nullptr);
}

TEST_F(SecretSealTest, NothingOfTheContentIsInTheFile) {
    const std::string content = "the weights of a secret network";
    EXPECT_THAT(stored(name_, *checksum_, content), HasSubstr(content));
    const std::string file = stored(name_, *secretSealWith(7), content);
    EXPECT_EQ(file.size(), kHeaderSize + content.size());
    for (std::size_t i = 0; i + 4 <= content.size(); ++i) {
        EXPECT_THAT(file, Not(HasSubstr(content.substr(i, 4))));
    }
}

TEST_F(SecretSealTest, TheSameContentIsEncryptedDifferentlyEachTime) {
    const auto seal = secretSealWith(7);
    const std::string content(100, 'x');
    EXPECT_NE(stored(name_, *seal, content), stored(name_, *seal, content));
}

TEST_F(SecretSealTest, AnotherKeyDoesNotOpenAnEntry) {
    EXPECT_EQ(store(name_, *secretSealWith(7), "content"), "");
    EXPECT_EQ(find(name_, *secretSealWith(8)), std::nullopt);
    EXPECT_THAT(find(name_, *secretSealWith(7)), Optional(std::string("content")));
}

TEST_F(SecretSealTest, EveryKeyCountsAndSoDoesTheirOrder) {
    const Encryption first({1}, PaddingType::NONE);
    const Encryption second({2}, PaddingType::NONE);
    EXPECT_EQ(store(name_, *makeSecretSeal({&first, &second}), "content"), "");
    EXPECT_EQ(find(name_, *makeSecretSeal({&first})), std::nullopt);
    EXPECT_EQ(find(name_, *makeSecretSeal({&second, &first})), std::nullopt);
    EXPECT_TRUE(find(name_, *makeSecretSeal({&first, &second})).has_value());
}

TEST_F(SecretSealTest, APlainEntryIsNotTakenForASecretOneNorTheReverse) {
    const auto secret = secretSealWith(7);
    EXPECT_EQ(store(name_, *checksum_, "content"), "");
    EXPECT_EQ(find(name_, *secret), std::nullopt);
    EXPECT_EQ(store(name_, *secret, "content"), "");
    EXPECT_EQ(find(name_, *checksum_), std::nullopt);
    // Nor if the header pretends the other kind.
    std::string file = directory_.read(name_.fileName());
    const HeaderStart start = headerStart(SealKind::kChecksum, name_, 7);
    std::copy(start.begin(), start.end(), file.begin());
    directory_.write(name_.fileName(), file);
    EXPECT_EQ(find(name_, *checksum_), std::nullopt);
}

// Opens an entry step by step, as the header's description says.
TEST_F(SecretSealTest, TheKeyIsDerivedFromThePackagesKeysAndTheEntrysName) {
    const std::string file = stored(name_, *secretSealWith(7), "content");
    const std::string packageKey(16, 7);
    std::array<unsigned char, 32> key{};
    ASSERT_TRUE(platform::deriveHkdfSha256(
        reinterpret_cast<const unsigned char*>(packageKey.data()), packageKey.size(),
        name_.fileName(), "quavin compiled network", key.data(), key.size()));
    platform::GcmSeal seal{};
    std::copy_n(file.begin() + 36, 12, seal.nonce.begin());
    std::copy_n(file.begin() + 48, 16, seal.tag.begin());
    std::string content = file.substr(kHeaderSize);
    EXPECT_TRUE(platform::decryptAes256Gcm(
        key.data(), reinterpret_cast<const unsigned char*>(file.data()), 36,
        reinterpret_cast<unsigned char*>(content.data()), content.size(), seal));
    EXPECT_EQ(content, "content");
}

TEST_F(SecretSealTest, FoundContentIsOverwrittenBeforeItIsFreed) {
    const auto seal = secretSealWith(7);
    EXPECT_EQ(store(name_, *seal, "the compiled network"), "");
    testing::FreeWatch watch;
    {
        const std::optional<EntryBuffer> found = cache_.find(name_, *seal, problem_);
        ASSERT_TRUE(found.has_value());
        watch.watch(found->content(), found->size());
    }
    EXPECT_TRUE(watch.wasFreed());
    EXPECT_TRUE(watch.wasZeroWhenFreed());
}

}  // namespace
}  // namespace VelmoraQuavin::internal
