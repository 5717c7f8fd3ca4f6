// What metadata remembers of a manifest, to be compared with a signature.

#include "package/manifest/manifest_digest.h"

#include <gmock/gmock.h>

#include "package/manifest/metadata_access.h"
#include "support/crypto.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"
#include "unit/package/signature/signature_fixture.h"

namespace VelmoraQuavin::testing {
namespace {

const std::string kManifest = R"({"targets": {"Openvino": {}}})";
const std::string kOtherEngine = R"({"targets": {"WinML": {}}})";

class ManifestDigestTest : public ::testing::Test {
protected:
    QuavinStatus load(const std::string& content, const std::string& name = "manifest.json") {
        directory_.write(name, content);
        return metadata_.load(Filepath(directory_.entry(name)));
    }
    const internal::ManifestDigest* remembered() const {
        return internal::MetadataAccess::manifest(metadata_).get();
    }
    void expectRemembered(const std::string& name, const std::string& content) const {
        ASSERT_NE(remembered(), nullptr);
        EXPECT_EQ(remembered()->name, name);
        EXPECT_EQ(remembered()->digest, sha256(content));
    }

    TempDirectory directory_;
    ModelMetadata metadata_;
};

TEST_F(ManifestDigestTest, NothingIsRememberedWithoutTrustedKeys) {
    ASSERT_THAT(load(kManifest), IsOk());
    EXPECT_EQ(remembered(), nullptr);
}

TEST_F(ManifestDigestTest, MetadataBuiltByAHostHasNone) {
    const TrustInKeys trust;
    EXPECT_EQ(remembered(), nullptr);
}

TEST_F(ManifestDigestTest, TheDigestOfTheFileIsRememberedWithItsName) {
    const TrustInKeys trust;
    ASSERT_THAT(load(kManifest), IsOk());
    expectRemembered("manifest.json", kManifest);
    ASSERT_THAT(load(kManifest + "\n", "other.json"), IsOk());
    expectRemembered("other.json", kManifest + "\n");
}

TEST_F(ManifestDigestTest, BytesInMemoryCountAsManifestJson) {
    const TrustInKeys trust;
    ASSERT_THAT(metadata_.loadFromMemory(kManifest.data(), kManifest.size()), IsOk());
    expectRemembered("manifest.json", kManifest);
}

TEST_F(ManifestDigestTest, CopiesRememberIt) {
    const TrustInKeys trust;
    ASSERT_THAT(load(kManifest), IsOk());
    const ModelMetadata copy(metadata_);
    EXPECT_EQ(internal::MetadataAccess::manifest(copy).get(), remembered());
}

TEST_F(ManifestDigestTest, AManifestThatFailsHalfwayIsForgotten) {
    const TrustInKeys trust;
    ASSERT_THAT(load(kManifest), IsOk());
    ASSERT_THAT(load(R"({"name": "other"})"),
                IsStatus(MODEL_METADATA_ERROR, "No target found in root of manifest file"));
    EXPECT_EQ(remembered(), nullptr);
}

TEST_F(ManifestDigestTest, ATargetLeftFromAnotherManifestIsNotVouchedFor) {
    const TrustInKeys trust;
    ASSERT_THAT(load(kManifest), IsOk());
    ASSERT_THAT(load(kOtherEngine), IsOk());
    EXPECT_EQ(remembered(), nullptr);
}

TEST_F(ManifestDigestTest, AFieldLeftFromAnotherManifestIsNotVouchedFor) {
    const TrustInKeys trust;
    for (const char* const field :
         {R"("id": "x")", R"("name": "x")", R"("author": "x")", R"("description": "x")",
          R"("sdkVersion": "x")", R"("version": 1)"}) {
        SCOPED_TRACE(field);
        const std::string with = R"({"targets": {"Openvino": {}}, )" + std::string(field) + "}";
        metadata_ = ModelMetadata();
        ASSERT_THAT(load(with), IsOk());
        expectRemembered("manifest.json", with);
        ASSERT_THAT(load(kManifest), IsOk());
        EXPECT_EQ(remembered(), nullptr);
        ASSERT_THAT(load(with), IsOk());
        expectRemembered("manifest.json", with);
    }
}

TEST_F(ManifestDigestTest, AFieldThatAHostSetBeforeIsNotVouchedFor) {
    const TrustInKeys trust;
    metadata_.setName("of the host");
    ASSERT_THAT(load(kManifest), IsOk());
    EXPECT_EQ(remembered(), nullptr);
}

TEST_F(ManifestDigestTest, AManifestThatCannotBeReadChangesNothing) {
    const TrustInKeys trust;
    ASSERT_THAT(load(kManifest), IsOk());
    EXPECT_EQ(metadata_.load(Filepath(directory_.entry("missing.json"))).getCode(),
              MODEL_METADATA_ERROR);
    EXPECT_EQ(load("no JSON").getCode(), MODEL_METADATA_ERROR);
    expectRemembered("manifest.json", kManifest);
}

TEST_F(ManifestDigestTest, ALargeManifestInMemoryIsRefusedAsEver) {
    const TrustInKeys trust;
    const std::string large = kManifest + std::string(std::size_t{1} << 20, ' ');
    EXPECT_THAT(metadata_.loadFromMemory(large.data(), large.size()),
                IsStatus(MODEL_METADATA_ERROR, "The bytes in memory are not a manifest"));
}

TEST_F(ManifestDigestTest, AManifestThatReplacesAllTargetsIsRemembered) {
    const TrustInKeys trust;
    ASSERT_THAT(load(kManifest), IsOk());
    const std::string both = R"({"targets": {"WinML": {}, "Openvino": {}}})";
    ASSERT_THAT(load(both), IsOk());
    expectRemembered("manifest.json", both);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
