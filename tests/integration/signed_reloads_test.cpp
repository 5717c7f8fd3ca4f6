// A model keeps a network for its next load only as long as the keys that vouched for it are the
// trusted ones.

#include "integration/signed_package_test.h"

namespace VelmoraQuavin::testing {
namespace {

class SignedReload : public SignedPackage {
protected:
    // Loads the package with other weights, which nobody signed.
    void loadUnsigned() {
        restart({});
        signed_ = files_;
        char& last = files_.at("net.bin").back();
        last = static_cast<char>(last ^ 1);
        ASSERT_THAT(loadCached(), IsOk());
    }
    void restoreFiles() { write(files_ = signed_); }
    // The other weights give something else than the signed ones.
    void expectUnsignedNumbers() {
        ASSERT_THAT(allocateInputs(), IsOk());
        const std::vector<float> x(16, 1);
        const std::vector<float> kept = predictFloats(x);
        const std::shared_ptr<QuavinModel> model = std::move(model_);
        restoreFiles();
        ASSERT_THAT(load(), IsOk());
        ASSERT_THAT(allocateInputs(), IsOk());
        EXPECT_NE(predictFloats(x), kept);
        model_ = model;
    }
    void expectRefusedAgain(const std::shared_ptr<QuavinModel>& model, const std::string& name) {
        const auto metadata = readManifest();
        expectThrows<SignatureException>([&] { static_cast<void>(model->load(metadata)); },
                                         SIGNATURE_ERROR, signedText(name));
        EXPECT_EQ(model->predict(inputs_, outputs_).getCode(), MODEL_NOT_LOADED);
    }

    Files signed_;
};

TEST_F(SignedReload, ReadsTheNetworkAgainThatWasReadBeforeKeysWereTrusted) {
    loadUnsigned();
    expectUnsignedNumbers();
    restart({readPem("p256")});
    ASSERT_THAT(model_->load(readManifest()), IsOk());
    expectItsNumbers();
}

TEST_F(SignedReload, RefusesTheNetworkThatWasReadBeforeKeysWereTrusted) {
    loadUnsigned();
    restart({readPem("p256")});
    expectRefusedAgain(model_, "net.bin");
    restoreFiles();
    ASSERT_THAT(model_->load(readManifest()), IsOk());
    expectItsNumbers();
}

TEST_F(SignedReload, RefusesANetworkOfTheCacheOrAnotherModelInTheSameWay) {
    const TempDirectory cache;
    options_.cacheDirectory = cache.text();
    loadUnsigned();
    ASSERT_THAT(loadCached(), IsOk());
    std::shared_ptr<QuavinModel> clone;
    ASSERT_THAT(client_.cloneModel(model_, clone), IsOk());
    restart({readPem("p256")});
    expectRefusedAgain(model_, "net.bin");
    expectRefusedAgain(clone, "net.bin");
    restoreFiles();
    for (const auto& model : {model_, clone}) {
        ASSERT_THAT(model->load(readManifest()), IsOk());
        model_ = model;
        expectItsNumbers();
    }
}

TEST_F(SignedReload, KeepsTheNetworkThatWasVerifiedWithTheSameKeys) {
    ASSERT_THAT(loadFiles(), IsOk());
    directory_.write("net.bin", std::string(64, '#'));
    ASSERT_THAT(model_->load(readManifest()), IsOk());
    expectItsNumbers();
    restart({readPem("p256"), readPem("p384")});
    expectRefusedAgain(model_, "net.bin");
}

TEST_F(SignedReload, VerifiesTheManifestBeforeItLooksForInputs) {
    ASSERT_THAT(loadFiles(), IsOk());
    directory_.write("manifest.json", R"({"targets": {"Openvino": {}}})");
    expectRefusedAgain(model_, "manifest.json");
    expectThrows<SignatureException>(
        [&] { static_cast<void>(model_->load(Filepath(directory_.entry("manifest.json")))); },
        SIGNATURE_ERROR, signedText("manifest.json"));
}

TEST_F(SignedReload, NeedsNoPackageInMemoryUntilOtherKeysAreTrusted) {
    const auto loadAgain = [this] {
        ASSERT_THAT(model_->load(model_->getMetadata()), IsOk());
        expectItsNumbers();
        std::shared_ptr<QuavinModel> clone;
        ASSERT_THAT(client_.cloneModel(model_, clone), IsOk());
        EXPECT_THAT(clone->load(clone->getMetadata()), IsOk());
    };
    ASSERT_THAT(loadArchive(), IsOk());
    loadAgain();
    ASSERT_THAT(loadBuffers(), IsOk());
    loadAgain();
    restart({readPem("p256")});
    expectThrows<FileException>(
        [&] { static_cast<void>(model_->load(model_->getMetadata())); }, FILE_ERROR,
        "The package was in memory, which the library did not keep: load it from there again");
}

}  // namespace
}  // namespace VelmoraQuavin::testing
