// Packages that a trusted key signed load from everywhere, secured or not.

#include "integration/signed_package_test.h"

namespace VelmoraQuavin::testing {
namespace {

TEST_F(SignedPackage, LoadsFromADirectory) {
    ASSERT_THAT(loadFiles(), IsOk());
    expectItsNumbers();
}

TEST_F(SignedPackage, LoadsAndRegistersThroughTheDeviceOverload) {
    write(files_);
    ASSERT_THAT(client_.getModel(directory_.text(), model_, Device(), 0), IsOk());
    expectItsNumbers();
}

TEST_F(SignedPackage, LoadsFromAnArchive) {
    ASSERT_THAT(loadArchive(), IsOk());
    expectItsNumbers();
}

TEST_F(SignedPackage, LoadsFromBuffers) {
    ASSERT_THAT(loadBuffers(), IsOk());
    expectItsNumbers();
    ASSERT_THAT(loadBuffers({}, true), IsOk());
    expectItsNumbers();
}

TEST_F(SignedPackage, LoadsAgainAndClones) {
    ASSERT_THAT(loadFiles(), IsOk());
    std::shared_ptr<QuavinModel> clone;
    ASSERT_THAT(client_.cloneModel(model_, clone), IsOk());
    const auto metadata = readManifest();
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    ASSERT_THAT(model_->load(metadata), IsOk());
    expectItsNumbers();
}

TEST_F(SignedPackage, FilesBesideThoseThatAreUsedPlayNoPart) {
    files_["README"] = "not signed";
    ASSERT_THAT(loadFiles(), IsOk());
    files_["model.sig"] = readSignatureData("with_another_file.sig");  // which is not there
    ASSERT_THAT(loadFiles(), IsOk());
    files_["notes.txt"] = "changed";
    EXPECT_THAT(loadFiles(), IsOk());
}

TEST_F(SignedPackage, IsDescribed) {
    write(files_);
    std::vector<ModelFeatureDescriptor> inputs;
    std::vector<ModelFeatureDescriptor> outputs;
    EXPECT_THAT(describeNetwork(*readManifest(), inputs, outputs), IsOk());
    directory_.write("net.bin", std::string(64, '#'));
    EXPECT_THAT(describeNetwork(*readManifest(), inputs, outputs),
                IsStatus(SIGNATURE_ERROR, signedText("net.bin")));
    directory_.write("manifest.json", files_.at("manifest.json") + " ");
    EXPECT_THAT(describeNetwork(*readManifest(), inputs, outputs),
                IsStatus(SIGNATURE_ERROR, signedText("manifest.json")));
}

TEST_F(SignedPackage, IsDescribedInMemory) {
    const auto describe = [this](std::vector<ModelFeatureDescriptor>& inputs) {
        std::vector<ModelFeatureDescriptor> outputs;
        const std::string tar = archive();
        QuavinStatus status = describeNetwork(tar.data(), tar.size(), {}, inputs, outputs);
        EXPECT_THAT(describeNetworkFromBuffers(buffers(), {}, inputs, outputs),
                    IsStatus(status.getCode(), status.getDescription()));
        return status;
    };
    std::vector<ModelFeatureDescriptor> inputs;
    ASSERT_THAT(describe(inputs), IsOk());
    ASSERT_EQ(inputs.size(), 1U);
    EXPECT_EQ(inputs[0].tensorDescriptor().shape().size(), 16U);
    const Files original = files_;
    for (const char* const name : {"manifest.json", "net.xml", "net.bin"}) {
        files_ = original;
        files_.at(name).back() = ' ';
        EXPECT_THAT(describe(inputs), IsStatus(SIGNATURE_ERROR, signedText(name)));
    }
    files_ = original;
    files_.erase("model.sig");
    EXPECT_THAT(describe(inputs),
                IsStatus(SIGNATURE_ERROR, "The package has no signature: model.sig is missing"));
    EXPECT_EQ(inputs.size(), 1U);  // unchanged
}

TEST_F(SignedPackage, WithADirectoryInPlaceOfTheSignatureAnswers3) {
    files_.erase("model.sig");
    files_["model.sig/file"] = "";
    const auto refused = IsStatus(FILE_ERROR, "File error!");
    EXPECT_THAT(loadFiles(), refused);
    EXPECT_EQ(model_, nullptr);
    EXPECT_THAT(loadMetadata(readManifest()), refused);
    std::vector<ModelFeatureDescriptor> ports;
    EXPECT_THAT(describeNetwork(*readManifest(), ports, ports), refused);
}

class SecuredSignedPackage : public SignedPackage {
protected:
    SecuredSignedPackage() {
        files_ = filesOf("secured");
        keys_.setComponentKey(countingKey().data());
    }
    QuavinStatus loadWithKeys() {
        write(files_);
        const auto metadata = readManifest();
        keys_.applyTo(*metadata);
        return client_.getModel(metadata, model_, QuavinModelType::Openvino, options_);
    }
    void flip() {
        char& byte = files_.at("files/net.bin").at(40);
        byte = static_cast<char>(byte ^ 1);
    }

    PackageKeys keys_;
};

TEST_F(SecuredSignedPackage, LoadsFromEverywhere) {
    ASSERT_THAT(loadWithKeys(), IsOk());
    expectItsNumbers();
    ASSERT_THAT(loadArchive(keys_), IsOk());
    expectItsNumbers();
    ASSERT_THAT(loadBuffers(keys_), IsOk());
    expectItsNumbers();
}

TEST_F(SecuredSignedPackage, AFlippedByteThatDecryptionMissesIsRefused) {
    flip();
    const auto refused = IsStatus(SIGNATURE_ERROR, signedText("files/net.bin"));
    EXPECT_THAT(loadWithKeys(), refused);
    EXPECT_THAT(loadArchive(keys_), refused);
    EXPECT_THAT(loadBuffers(keys_), refused);
}

TEST_F(SecuredSignedPackage, LoadsThroughTheCacheAndNoFurther) {
    const TempDirectory cache;
    options_.cacheDirectory = cache.text();
    ASSERT_THAT(loadWithKeys(), IsOk());
    ASSERT_THAT(loadWithKeys(), IsOk());
    expectItsNumbers();
    flip();
    EXPECT_THAT(loadWithKeys(), IsStatus(SIGNATURE_ERROR, signedText("files/net.bin")));
}

TEST_F(SecuredSignedPackage, LoadsFromAnArchiveThatIsSecuredAsAWhole) {
    keys_.setArchiveKey(anotherKey().data());
    const auto archive = [&] {
        std::string tar;
        for (const auto& [name, content] : files_) {
            tar += tarFile(name, content);
        }
        return secured(tar + tarEnd(), anotherKey(), BlockFilling::kPkcs7);
    };
    ASSERT_THAT(loadBytes(archive(), keys_), IsOk());
    expectItsNumbers();
    flip();
    EXPECT_THAT(loadBytes(archive(), keys_),
                IsStatus(SIGNATURE_ERROR, signedText("files/net.bin")));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
