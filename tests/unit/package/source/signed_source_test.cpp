// A package whose contents change at will, under the signature of tests/data/signature/package.

#include "package/source/signed_source.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>

#include "package/signature/verify_signature.h"
#include "package/source/network_components.h"
#include "support/crypto.h"
#include "support/status_matcher.h"
#include "unit/package/signature/signature_fixture.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::ComponentReader;
using internal::ComponentSource;
using internal::ManifestDigest;
using internal::MappedBytes;
using internal::NetworkComponentEntry;
using internal::SignedSource;
using internal::StoredBytes;

using Files = std::map<std::string, std::string>;

const std::string kOtherNetBin = "The digest of \"net.bin\" is not the one that was signed";

class ChangingBytes : public StoredBytes {
public:
    ChangingBytes(const Files& files, std::string name, bool inMemory)
        : files_(files),
          name_(std::move(name)),
          size_(files.at(name_).size()),
          inMemory_(inMemory) {}

    uint64 size() const override { return size_; }
    void read(char* buffer, uint64 count) override {
        std::copy_n(files_.at(name_).data() + read_, count, buffer);
        read_ += count;
    }
    std::optional<MappedBytes> map() override {
        const auto bytes = std::make_shared<const std::string>(files_.at(name_));
        return MappedBytes{{bytes, bytes->data()}, bytes->size()};
    }
    bool isInMemory() const noexcept override { return inMemory_; }

private:
    const Files& files_;
    const std::string name_;
    const uint64 size_;
    const bool inMemory_;
    uint64 read_ = 0;
};

class ChangingPackage : public ComponentSource {
public:
    String name() const override { return "changing"; }
    String resolve(const String& path) const override { return path; }
    bool contains(const String& path) const override { return files.count(path.str()) != 0; }
    std::unique_ptr<StoredBytes> open(const NetworkComponentEntry& component) const override {
        return std::make_unique<ChangingBytes>(files, component.path.str(), inMemory);
    }

    Files files;
    bool inMemory = false;
};

class SignedSourceTest : public ::testing::Test {
protected:
    SignedSourceTest() {
        for (const char* const name : {"manifest.json", "net.xml", "net.bin", "model.sig"}) {
            package_->files[name] = readSignatureData("package/" + std::string(name));
        }
        manifest_ = {"manifest.json", sha256(package_->files.at("manifest.json"))};
    }

    SignedSource verified() const { return {package_, &manifest_, internal::trustedKeys()}; }
    static NetworkComponentEntry entry(const std::string& path) {
        return {path, ComponentKind::File, path, Encryption()};
    }
    static std::string read(const ComponentSource& source, const std::string& path) {
        const NetworkComponentEntry component = entry(path);
        ComponentReader reader(source, component);
        std::string content(reader.size(), '\0');
        reader.read(content.data());
        return content;
    }
    template <typename Action>
    static void expectRefused(const Action& action, const std::string& text) {
        expectThrows<SignatureException>(action, SIGNATURE_ERROR, text);
    }

    const TrustInKeys trust_;
    const std::shared_ptr<ChangingPackage> package_ = std::make_shared<ChangingPackage>();
    ManifestDigest manifest_;
};

TEST_F(SignedSourceTest, GivesTheComponentsThatWereSigned) {
    const SignedSource source = verified();
    EXPECT_EQ(read(source, "net.xml"), package_->files.at("net.xml"));
    EXPECT_EQ(read(source, "net.bin"), package_->files.at("net.bin"));
    EXPECT_EQ(source.name(), "changing");
    EXPECT_EQ(source.resolve("a"), "a");
    EXPECT_EQ(source.sealed(), nullptr);
}

TEST_F(SignedSourceTest, APackageWithoutSignatureIsRefused) {
    package_->files.erase("model.sig");
    expectRefused([&] { verified(); }, "The package has no signature: model.sig is missing");
}

TEST_F(SignedSourceTest, AnotherManifestIsRefused) {
    manifest_.digest->at(0) ^= 1U;
    expectRefused([&] { verified(); },
                  "The digest of \"manifest.json\" is not the one that was signed");
}

TEST_F(SignedSourceTest, AManifestThatCouldNotBeHashedIsRefused) {
    manifest_.digest.reset();
    expectRefused([&] { verified(); },
                  "The digest of \"manifest.json\" cannot be computed: the system's cryptography "
                  "fails");
}

TEST_F(SignedSourceTest, AManifestOfAnotherNameIsRefused) {
    manifest_.name = "other.json";
    expectRefused([&] { verified(); }, "The signature does not cover \"other.json\"");
}

TEST_F(SignedSourceTest, AnUnknownManifestIsRefused) {
    expectRefused([&] { SignedSource(package_, nullptr, internal::trustedKeys()); },
                  "The metadata was not read from one manifest after trusted keys were set");
}

TEST_F(SignedSourceTest, TheSignatureIsVerifiedBeforeTheManifestIsCompared) {
    package_->files["model.sig"] = readBundle("other_key");
    expectRefused([&] { SignedSource(package_, nullptr, internal::trustedKeys()); },
                  "model.sig is not signed by a trusted key");
}

TEST_F(SignedSourceTest, ALargeSignatureIsRefusedWithoutReadingIt) {
    package_->files["model.sig"] = std::string(internal::kLargestSignature + 1, ' ');
    expectRefused([&] { verified(); },
                  "model.sig is not the signature of a model: it has more than 16777216 bytes");
}

TEST_F(SignedSourceTest, AComponentThatTheSignatureLacksIsRefusedEvenIfItIsThere) {
    package_->files["other.bin"] = "bytes";
    const SignedSource source = verified();
    expectRefused([&] { source.open(entry("other.bin")); },
                  "The signature does not cover \"other.bin\"");
}

TEST_F(SignedSourceTest, AComponentThatThePackageLacksIsRefused) {
    package_->files.erase("net.bin");
    const SignedSource source = verified();
    expectRefused([&] { source.open(entry("net.bin")); },
                  "The signature covers \"net.bin\", which the package lacks");
}

TEST_F(SignedSourceTest, NamesAreComparedWithOneKindOfSeparatorAndInTheirCase) {
    const SignedSource source = verified();
    package_->files[".\\net.bin"] = package_->files.at("net.bin");
    EXPECT_EQ(read(source, ".\\net.bin"), package_->files.at("net.bin"));
    const std::vector<std::pair<std::string, std::string>> others = {
        {"Net.bin", "Net.bin"},
        {"net.bin ", "net.bin "},
        {"a\\..\\net.bin", "a/../net.bin"},
        {"..\\net.bin", "../net.bin"}};
    for (const auto& [path, name] : others) {
        package_->files[path] = package_->files.at("net.bin");
        expectRefused([&source, path = path] { source.open(entry(path)); },
                      "The signature does not cover \"" + name + '"');
    }
}

TEST_F(SignedSourceTest, AChangedComponentIsRefusedOnceItHasBeenRead) {
    std::string& weights = package_->files.at("net.bin");
    weights.back() = static_cast<char>(weights.back() ^ 1);
    const SignedSource source = verified();
    expectRefused([&] { read(source, "net.bin"); }, kOtherNetBin);
}

TEST_F(SignedSourceTest, AnEmptiedComponentIsRefused) {
    package_->files["net.bin"] = "";
    const SignedSource source = verified();
    expectRefused([&] { read(source, "net.bin"); }, kOtherNetBin);
}

TEST_F(SignedSourceTest, AComponentSwappedAfterTheSignatureWasVerifiedIsRefused) {
    const SignedSource source = verified();
    package_->files["net.bin"] = std::string(package_->files.at("net.bin").size(), '#');
    expectRefused([&] { read(source, "net.bin"); }, kOtherNetBin);
}

TEST_F(SignedSourceTest, AComponentSwappedAfterItWasOpenedIsRefused) {
    const SignedSource source = verified();
    const auto stored = source.open(entry("net.bin"));
    package_->files["net.bin"] = std::string(stored->size(), '#');
    std::string buffer(stored->size(), '\0');
    expectRefused([&] { stored->read(buffer.data(), buffer.size()); }, kOtherNetBin);
}

TEST_F(SignedSourceTest, PartsAreComparedTogetherWithTheLastOne) {
    const SignedSource source = verified();
    for (const bool changed : {false, true}) {
        if (changed) {
            package_->files.at("net.bin").front() = '#';
        }
        const auto stored = source.open(entry("net.bin"));
        std::string buffer(stored->size(), '\0');
        const uint64 first = buffer.size() / 3;
        stored->read(buffer.data(), first);
        const auto rest = [&] { stored->read(buffer.data() + first, buffer.size() - first); };
        if (changed) {
            expectRefused(rest, kOtherNetBin);
        } else {
            rest();
            EXPECT_EQ(buffer, package_->files.at("net.bin"));
        }
    }
}

TEST_F(SignedSourceTest, FilesAreNeverMapped) {
    const SignedSource source = verified();
    EXPECT_FALSE(source.open(entry("net.bin"))->map().has_value());
}

TEST_F(SignedSourceTest, BytesInMemoryAreComparedInPlace) {
    package_->inMemory = true;
    const SignedSource source = verified();
    const auto stored = source.open(entry("net.bin"));
    EXPECT_TRUE(stored->isInMemory());
    const auto mapped = stored->map();
    ASSERT_TRUE(mapped.has_value());
    EXPECT_EQ(std::string(mapped->data.get(), mapped->size), package_->files.at("net.bin"));
    package_->files.at("net.bin").front() = '#';
    expectRefused([&] { source.open(entry("net.bin"))->map(); }, kOtherNetBin);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
