// Packages that are not what a trusted key signed are refused, each with its reason.

#include <filesystem>
#include <functional>
#include <utility>

#include "integration/signed_package_test.h"

namespace VelmoraQuavin::testing {
namespace {

namespace fs = std::filesystem;
using Change = std::function<void(Files&)>;

struct Tampering {
    std::string name;
    Change change;
    std::string text;
};

class TamperedPackage : public SignedPackage, public ::testing::WithParamInterface<Tampering> {
protected:
    TamperedPackage() { GetParam().change(files_); }
    void expectRefused(const QuavinStatus& status) const {
        EXPECT_THAT(status, IsStatus(SIGNATURE_ERROR, GetParam().text));
        Features outputs;
        EXPECT_TRUE(model_ == nullptr ||
                    model_->predict({}, outputs).getCode() == MODEL_NOT_LOADED);
    }
};

TEST_P(TamperedPackage, IsRefusedInADirectory) {
    expectRefused(loadFiles());
}

TEST_P(TamperedPackage, IsRefusedAsMetadata) {
    write(files_);
    expectRefused(loadMetadata(readManifest()));
}

TEST_P(TamperedPackage, IsRefusedInAnArchive) {
    expectRefused(loadArchive());
}

TEST_P(TamperedPackage, IsRefusedInBuffers) {
    expectRefused(loadBuffers());
    expectRefused(loadBuffers({}, true));
}

TEST_P(TamperedPackage, IsRefusedWithTheSignedNetworkInTheCache) {
    const TempDirectory cache;
    options_.cacheDirectory = cache.text();
    const Files tampered = std::exchange(files_, filesOf("package"));
    ASSERT_THAT(loadCached(), IsOk());
    ASSERT_THAT(loadCached(), IsOk());
    model_.reset();
    for (const auto& [name, content] : files_) {
        fs::remove(directory_.path() / name);
    }
    files_ = tampered;
    expectRefused(loadCached());
}

TEST_P(TamperedPackage, LoadsOrFailsAsEverWithoutTrustedKeys) {
    restart({});
    EXPECT_NE(loadFiles().getCode(), SIGNATURE_ERROR);
}

Change replacing(const std::string& name, const std::string& content) {
    return [=](Files& files) { files.at(name) = content; };
}

Change withFlippedBit(const std::string& name) {
    return [=](Files& files) {
        char& last = files.at(name).back();
        last = static_cast<char>(last ^ 1);
    };
}

INSTANTIATE_TEST_SUITE_P(
    Each, TamperedPackage,
    ::testing::Values(
        Tampering{"NoSignature", [](Files& files) { files.erase("model.sig"); },
                  "The package has no signature: model.sig is missing"},
        Tampering{"EmptySignature", replacing("model.sig", ""),
                  "model.sig is not the signature of a model: it is not JSON in UTF-8"},
        Tampering{
            "OtherMethod", replacing("model.sig", readBundle("shards")),
            "model.sig uses a method that is not supported: its serialization is not of whole "
            "files"},
        Tampering{"OtherHash", replacing("model.sig", readBundle("other_hash")),
                  "model.sig uses a method that is not supported: its hash is not SHA-256"},
        Tampering{"KeyThatIsNotTrusted", replacing("model.sig", readBundle("right_p384")),
                  kNotTrusted},
        Tampering{"SignatureOfAnotherPackage", replacing("model.sig", readBundle("right")),
                  signedText("manifest.json")},
        Tampering{"SignatureOfNothing", replacing("model.sig", readBundle("no_resources")),
                  "The signature does not cover \"manifest.json\""},
        Tampering{"SignatureWithoutTheWeights",
                  replacing("model.sig", readSignatureData("without_weights.sig")),
                  "The signature does not cover \"net.bin\""},
        Tampering{"ChangedManifest", [](Files& files) { files.at("manifest.json").back() = ' '; },
                  signedText("manifest.json")},
        Tampering{"ManifestWithoutTargets", replacing("manifest.json", R"({"targets": {}})"),
                  signedText("manifest.json")},
        Tampering{"ChangedTopology", withFlippedBit("net.xml"), signedText("net.xml")},
        Tampering{"ChangedWeights", withFlippedBit("net.bin"), signedText("net.bin")},
        Tampering{"CutWeights", [](Files& files) { files.at("net.bin").pop_back(); },
                  signedText("net.bin")},
        Tampering{"LongerWeights", [](Files& files) { files.at("net.bin") += '\0'; },
                  signedText("net.bin")},
        Tampering{"EmptyWeights", replacing("net.bin", ""), signedText("net.bin")},
        Tampering{"NoTopology", [](Files& files) { files.erase("net.xml"); },
                  "The signature covers \"net.xml\", which the package lacks"},
        Tampering{"NoWeights", [](Files& files) { files.erase("net.bin"); },
                  "The signature covers \"net.bin\", which the package lacks"}),
    [](const auto& tampering) { return tampering.param.name; });

}  // namespace
}  // namespace VelmoraQuavin::testing
