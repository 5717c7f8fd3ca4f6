#include "package/source/memory_source.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "package/source/network_components.h"
#include "support/model_package.h"
#include "support/secured_file.h"
#include "support/small_networks.h"
#include "support/status_matcher.h"
#include "support/tar_archive.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::MappedBytes;
using internal::MemorySource;
using internal::NetworkComponentEntry;
using internal::StoredBytes;

NetworkComponentEntry entryAt(const String& path) {
    return {path, "file", path, Encryption()};
}

PackageBuffer bufferOf(const String& name, const std::string& content,
                       std::shared_ptr<const void> owner = nullptr) {
    return {name, content.data(), content.size(), std::move(owner)};
}

std::string contentOf(StoredBytes& bytes) {
    std::string content(bytes.size(), '?');
    bytes.read(content.data(), content.size());
    return content;
}

std::string contentOf(const MemorySource& source, const String& path) {
    return contentOf(*source.open(entryAt(path)));
}

class BuffersInMemory : public ::testing::Test {
protected:
    void expectRefused(const std::vector<PackageBuffer>& buffers, STATUS_CODE code,
                       const std::string& text) const {
        try {
            const MemorySource source(buffers);
            ADD_FAILURE() << "nothing was thrown; expected \"" << text << '"';
        } catch (...) {
            EXPECT_THAT(getStatusFromCurrentException(), IsStatus(code, text));
        }
    }

    const std::string manifest_ = describe(affineNetwork()).manifest();
    const PackageBuffer manifestBuffer_ = bufferOf("manifest.json", manifest_);
    alignas(64) const std::array<char, 64> bytes_{"the weights"};
};

TEST_F(BuffersInMemory, AreFoundByTheComponentsPath) {
    const std::string first = "first";
    const std::string second = "second";
    const MemorySource source(
        {manifestBuffer_, bufferOf("net.xml", first), bufferOf("data\\net.bin", second)});
    EXPECT_EQ(contentOf(source, "net.xml"), "first");
    EXPECT_EQ(contentOf(source, "./net.xml"), "first");
    EXPECT_EQ(contentOf(source, "data/net.bin"), "second");
    EXPECT_EQ(contentOf(source, ".\\data\\net.bin"), "second");
    EXPECT_EQ(source.sealed(), nullptr);
}

TEST_F(BuffersInMemory, AreNamedInMessagesAsTheManifestNamesThem) {
    const MemorySource source({manifestBuffer_});
    EXPECT_EQ(source.name(), "in memory");
    EXPECT_EQ(source.resolve("a/net.xml"), "a/net.xml");
}

TEST_F(BuffersInMemory, ThatAreMissingAnswer3WithTheirPath) {
    const MemorySource source({manifestBuffer_});
    for (const std::string path : {"net.xml", "../net.xml", "/etc/passwd", ""}) {
        expectThrows<FileException>([&] { source.open(entryAt(path)); }, FILE_ERROR,
                                    "The package in memory does not contain \"" + path + "\"");
    }
}

TEST_F(BuffersInMemory, MayBeEmptyWithoutMemory) {
    const MemorySource source({manifestBuffer_, {"net.bin", nullptr, 0, nullptr}});
    EXPECT_EQ(contentOf(source, "net.bin"), "");
    EXPECT_EQ(source.open(entryAt("net.bin"))->map(), std::nullopt);
}

TEST_F(BuffersInMemory, NeedAManifest) {
    expectRefused({}, MODEL_METADATA_ERROR, "No buffer is named manifest.json");
    expectRefused({bufferOf("model/manifest.json", manifest_)}, MODEL_METADATA_ERROR,
                  "No buffer is named manifest.json");
}

TEST_F(BuffersInMemory, NeedNames) {
    expectRefused({manifestBuffer_, bufferOf("", "x")}, INVALID_ARGUMENTS,
                  "Buffer \"\": it has no name");
    expectRefused({manifestBuffer_, bufferOf("./", "x")}, INVALID_ARGUMENTS,
                  "Buffer \"./\": it has no name");
}

TEST_F(BuffersInMemory, NeedTheirBytes) {
    expectRefused({manifestBuffer_, {"net.bin", nullptr, 1, nullptr}}, INVALID_ARGUMENTS,
                  "Buffer \"net.bin\": its bytes must not be null");
}

TEST_F(BuffersInMemory, NeedDifferentNames) {
    const std::string content;
    expectRefused({manifestBuffer_, bufferOf("a/b", content), bufferOf("a\\b", content)},
                  INVALID_ARGUMENTS, R"(Buffer "a\b": there is another one of this name)");
}

TEST_F(BuffersInMemory, AreOnlyReadWithoutAnOwner) {
    const MemorySource source({manifestBuffer_, {"net.bin", bytes_.data(), 11, nullptr}});
    const auto stored = source.open(entryAt("net.bin"));
    EXPECT_FALSE(stored->isInMemory());
    EXPECT_EQ(stored->map(), std::nullopt);
    EXPECT_EQ(contentOf(*stored), "the weights");
}

TEST_F(BuffersInMemory, AreMappedWhereTheyAreWithAnOwner) {
    auto owner = std::make_shared<int>();
    const std::weak_ptr<int> watched = owner;
    std::optional<MappedBytes> mapped;
    {
        const MemorySource source({manifestBuffer_, {"net.bin", bytes_.data(), 11, owner}});
        owner.reset();
        const auto stored = source.open(entryAt("net.bin"));
        EXPECT_TRUE(stored->isInMemory());
        mapped = stored->map();
    }
    ASSERT_TRUE(mapped.has_value());
    EXPECT_EQ(mapped->data.get(), bytes_.data());
    EXPECT_EQ(mapped->size, 11U);
    EXPECT_FALSE(watched.expired());
    mapped.reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(BuffersInMemory, AreReadIfTheyAreNotAligned) {
    const auto owner = std::make_shared<int>();
    for (std::size_t offset = 0; offset <= 32; ++offset) {
        const MemorySource source({manifestBuffer_, {"net.bin", bytes_.data() + offset, 1, owner}});
        const auto stored = source.open(entryAt("net.bin"));
        EXPECT_EQ(stored->isInMemory(), offset % 16 == 0) << offset;
        EXPECT_EQ(stored->map().has_value(), offset % 16 == 0) << offset;
    }
}

TEST_F(BuffersInMemory, GiveMetadataWithTheirKeys) {
    PackageText text = describe(affineNetwork());
    text.components = {{"secured_file", "net.xml"}, {"file", "net.bin"}};
    const std::string manifest = text.manifest();
    PackageKeys keys;
    keys.setComponentKey(countingKey().data());
    const auto source = std::make_shared<const MemorySource>(
        std::vector<PackageBuffer>{bufferOf("manifest.json", manifest)});
    const auto metadata = internal::readMetadata(source, keys);
    EXPECT_EQ(metadata->getName(), "a model");
    EXPECT_EQ(String(metadata->getRootDir().c_str()), "");
    const auto& components = metadata->getTargets().at(QuavinModelType::Openvino).components;
    const CryptoKey key = countingKey();
    EXPECT_TRUE(std::equal(key.begin(), key.end(), components[0].encryption.getKey()));
    EXPECT_EQ(components[1].path, "net.bin");
}

TEST_F(BuffersInMemory, AreTheSourceOfTheirMetadataWhileTheyLast) {
    auto source = std::make_shared<const MemorySource>(std::vector<PackageBuffer>{manifestBuffer_});
    const auto metadata = internal::readMetadata(source, {});
    EXPECT_EQ(internal::makeComponentSource(*metadata), source);
    const ModelMetadata copy = *metadata;  // NOLINT(performance-unnecessary-copy-initialization)
    source.reset();
    EXPECT_EQ(internal::makeComponentSource(*metadata)->name(), "in memory");
    EXPECT_EQ(internal::makeComponentSource(*metadata)->resolve("net.xml"), "net.xml");
    for (const ModelMetadata& gone : {*metadata, copy}) {
        expectThrows<FileException>(
            [&gone] { internal::makeComponentSource(gone)->open(entryAt("net.xml")); }, FILE_ERROR,
            "The package was in memory, which the library did not keep: load it from there again");
    }
}

TEST_F(BuffersInMemory, AreForgottenByMetadataThatGetsADirectoryOrAnotherManifest) {
    const auto source =
        std::make_shared<const MemorySource>(std::vector<PackageBuffer>{manifestBuffer_});
    auto metadata = internal::readMetadata(source, {});
    metadata->setRootDir(Filepath("somewhere"));
    EXPECT_EQ(internal::makeComponentSource(*metadata)->name(), "somewhere");
    metadata = internal::readMetadata(source, {});
    EXPECT_THAT(metadata->loadFromMemory(manifest_.data(), manifest_.size()), IsOk());
    EXPECT_NE(internal::makeComponentSource(*metadata), source);
}

TEST_F(BuffersInMemory, ThatAreNoManifestAnswerTheReadersStatus) {
    const std::string broken = "{";
    const auto source = std::make_shared<const MemorySource>(
        std::vector<PackageBuffer>{bufferOf("manifest.json", broken)});
    expectThrows<Exception>([&] { internal::readMetadata(source, {}); }, MODEL_METADATA_ERROR,
                            "The bytes in memory are not a manifest");
}

TEST(ArchiveInMemory, HoldsTheFilesOfItsPackage) {
    const std::string archive = archiveOf(packageOf(affineNetwork()), "model");
    const MemorySource source(archive.data(), archive.size(), {});
    EXPECT_EQ(contentOf(source, "net.xml"), affineNetwork().topology());
    EXPECT_EQ(contentOf(source, "net.bin"), affineNetwork().weights());
    EXPECT_FALSE(source.open(entryAt("net.bin"))->isInMemory());
    EXPECT_EQ(source.sealed(), nullptr);
}

TEST(ArchiveInMemory, OnlyHoldsFilesThatAreInIt) {
    const std::string archive = archiveOf(packageOf(affineNetwork()), "model");
    const MemorySource source(archive.data(), archive.size(), {});
    for (const std::string path : {"missing", "model/net.xml", "../model/net.xml", ""}) {
        expectThrows<FileException>([&] { source.open(entryAt(path)); }, FILE_ERROR,
                                    "The package in memory does not contain \"" + path + "\"");
    }
}

TEST(ArchiveInMemory, MustNotBeNull) {
    PackageKeys keys;
    expectThrows<InvalidArgumentsException>([&] { const MemorySource source(nullptr, 5, keys); },
                                            INVALID_ARGUMENTS, "The archive must not be null");
    keys.setArchiveKey(countingKey().data());
    expectThrows<InvalidArgumentsException>([&] { const MemorySource source(nullptr, 32, keys); },
                                            INVALID_ARGUMENTS, "The archive must not be null");
}

class SecuredArchiveInMemory : public ::testing::Test {
protected:
    SecuredArchiveInMemory() { keys_.setArchiveKey(countingKey().data()); }

    const std::string archive_ =
        secured(archiveOf(packageOf(affineNetwork())), countingKey(), BlockFilling::kPkcs7);
    PackageKeys keys_;
};

TEST_F(SecuredArchiveInMemory, IsDecryptedInACopyThatItsFilesKeep) {
    const std::string before = archive_;
    std::optional<MappedBytes> mapped;
    {
        const MemorySource source(archive_.data(), archive_.size(), keys_);
        EXPECT_EQ(contentOf(source, "net.xml"), affineNetwork().topology());
        const auto weights = source.open(entryAt("net.bin"));
        EXPECT_TRUE(weights->isInMemory());
        mapped = weights->map();
    }
    ASSERT_TRUE(mapped.has_value());
    EXPECT_EQ(std::string(mapped->data.get(), mapped->size), affineNetwork().weights());
    EXPECT_EQ(archive_, before);
}

TEST_F(SecuredArchiveInMemory, TellsThatItsContentIsSecret) {
    const MemorySource source(archive_.data(), archive_.size(), keys_);
    ASSERT_NE(source.sealed(), nullptr);
    EXPECT_EQ(source.sealed()->stored, archive_);
    EXPECT_EQ(source.sealed()->stored.data(), archive_.data());
    const internal::NetworkComponents network{source, entryAt("net.xml"), entryAt("net.bin")};
    EXPECT_TRUE(network.isSecret(network.topology));
    EXPECT_TRUE(network.areSecret());
}

TEST_F(SecuredArchiveInMemory, IsRefusedWithAnotherKey) {
    keys_.setArchiveKey(anotherKey().data());
    expectThrows<Exception>(
        [&] { const MemorySource source(archive_.data(), archive_.size(), keys_); },
        TAR_CHECKSUM_MISMATCH, "Archive entry 1: the header's checksum is wrong");
}

TEST_F(SecuredArchiveInMemory, IsRefusedWithoutItsKey) {
    expectThrows<Exception>(
        [&] { const MemorySource source(archive_.data(), archive_.size(), {}); },
        TAR_CHECKSUM_MISMATCH, "Archive entry 1: the header's checksum is wrong");
}

TEST_F(SecuredArchiveInMemory, IsRefusedInASizeThatNoneHas) {
    for (const std::size_t size : {0U, 15U, 17U, 1000U}) {
        expectThrows<InvalidArgumentsException>(
            [&] { const MemorySource source(archive_.data(), size, keys_); }, INVALID_ARGUMENTS,
            "A secured archive has a multiple of 16 bytes, at least 16 and less than 4 GiB, not " +
                std::to_string(size));
    }
}

TEST_F(SecuredArchiveInMemory, ThatIsPlainIsRefused) {
    const std::string plain = archiveOf(packageOf(affineNetwork()));
    expectThrows<Exception>([&] { const MemorySource source(plain.data(), plain.size(), keys_); },
                            TAR_CHECKSUM_MISMATCH,
                            "Archive entry 1: the header's checksum is wrong");
}

}  // namespace
}  // namespace VelmoraQuavin::testing
