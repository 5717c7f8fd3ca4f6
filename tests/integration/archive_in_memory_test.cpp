// Packages in archives that a host has in memory.

#include "integration/memory_package_test.h"
#include "support/recording_log_processor.h"
#include "support/tar_archive.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class ArchiveInMemory : public MemoryPackageTest {};

TEST_F(ArchiveInMemory, LoadsAndPredicts) {
    ASSERT_THAT(loadArchive(archiveOf(packageOf(affineNetwork()))), IsOk());
    expectAffineNumbers();
    EXPECT_EQ(model_->getName(), "a model");
    EXPECT_EQ(model_->getModelType(), QuavinModelType::Openvino);
    EXPECT_EQ(String(model_->getMetadata()->getRootDir().c_str()), "");
}

TEST_F(ArchiveInMemory, MayHaveItsPackageInADirectory) {
    ASSERT_THAT(loadArchive(archiveOf(packageOf(affineNetwork()), "model")), IsOk());
    expectAffineNumbers();
}

TEST_F(ArchiveInMemory, MayHaveComponentsInSubdirectories) {
    PackageText text = describe(affineNetwork());
    text.components = {
        {"memory_stream", "skipped"}, {"file", "a/net.xml"}, {"file", "a/b/net.bin"}};
    ASSERT_THAT(loadArchive(archiveOf({{"manifest.json", text.manifest()},
                                       {"a/net.xml", affineNetwork().topology()},
                                       {"a/b/net.bin", affineNetwork().weights()}})),
                IsOk());
    expectAffineNumbers();
}

TEST_F(ArchiveInMemory, MayHoldANetworkWithoutConstants) {
    ASSERT_THAT(loadArchive(archiveOf(packageOf(sumNetwork()))), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    EXPECT_THAT(predictFloats({1, 2}), ElementsAre(2.F, 4.F));
}

TEST_F(ArchiveInMemory, MayHoldSecuredComponents) {
    keys_.setComponentKey(countingKey().data());
    const std::string archive = archiveOf(securedPackageOf(affineNetwork(), countingKey()));
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): shows that nothing writes to it
    const std::string before = archive;
    ASSERT_THAT(client_.getModel(archive.data(), archive.size(), keys_, model_,
                                 QuavinModelType::Openvino, EngineOptions()),
                IsOk());
    expectAffineNumbers();
    EXPECT_EQ(archive, before);  // not decrypted in place
}

TEST_F(ArchiveInMemory, TakesAKeyForEachComponent) {
    PackageFiles files = securedPackageOf(affineNetwork(), countingKey());
    files["net.bin"] = secured(affineNetwork().weights(), anotherKey(), BlockFilling::kPkcs7);
    keys_.setComponentKey(countingKey().data());
    keys_.setComponentKey("net.bin", anotherKey().data());
    ASSERT_THAT(loadArchive(archiveOf(files)), IsOk());
    expectAffineNumbers();
}

TEST_F(ArchiveInMemory, WithAWrongComponentKeyAnswersTheEnginesReadError) {
    keys_.setComponentKey(anotherKey().data());
    EXPECT_THAT(loadArchive(archiveOf(securedPackageOf(affineNetwork(), countingKey()))),
                IsStatusWith(FILE_ERROR, Not(IsEmpty())));
}

TEST_F(ArchiveInMemory, MayBeSecuredAsAWhole) {
    keys_.setArchiveKey(countingKey().data());
    const std::string archive = securedArchiveOf(packageOf(affineNetwork()), countingKey());
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): shows that nothing writes to it
    const std::string before = archive;
    ASSERT_THAT(client_.getModel(archive.data(), archive.size(), keys_, model_,
                                 QuavinModelType::Openvino, EngineOptions()),
                IsOk());
    expectAffineNumbers();
    EXPECT_EQ(archive, before);
}

// docs/package-format.md shows these lines.
TEST_F(ArchiveInMemory, SecuredAsAWholeLoadsAsDocumented) {
    const std::string archive = securedArchiveOf(packageOf(affineNetwork()), countingKey());
    const CryptoKey counting = countingKey();
    const unsigned char* const key = counting.data();
    PackageKeys keys;
    keys.setArchiveKey(key);
    std::shared_ptr<QuavinModel> model;
    QuavinStatus status = QuavinClient::instance().getModel(
        archive.data(), archive.size(), keys, model, QuavinModelType::Openvino, EngineOptions());
    EXPECT_THAT(status, IsOk());
    model_ = std::move(model);
    expectAffineNumbers();
}

TEST_F(ArchiveInMemory, MayBeSecuredAsAWholeAndGoAfterwards) {
    keys_.setArchiveKey(countingKey().data());
    ASSERT_THAT(loadArchive(securedArchiveOf(packageOf(affineNetwork()), countingKey())), IsOk());
    keys_ = PackageKeys();
    expectAffineNumbers();
    expectAffineNumbers();
}

TEST_F(ArchiveInMemory, MayBeSecuredAsAWholeWithSecuredComponents) {
    keys_.setArchiveKey(anotherKey().data());
    keys_.setComponentKey(countingKey().data());
    ASSERT_THAT(loadArchive(securedArchiveOf(securedPackageOf(affineNetwork(), countingKey()),
                                             anotherKey())),
                IsOk());
    expectAffineNumbers();
}

TEST_F(ArchiveInMemory, WithAWrongOrMissingKeyAnswers21) {
    const std::string archive = securedArchiveOf(packageOf(affineNetwork()), countingKey());
    const std::string text = "Archive entry 1: the header's checksum is wrong";
    EXPECT_THAT(loadArchive(archive), IsStatus(TAR_CHECKSUM_MISMATCH, text));
    keys_.setArchiveKey(anotherKey().data());
    EXPECT_THAT(loadArchive(archive), IsStatus(TAR_CHECKSUM_MISMATCH, text));
    EXPECT_EQ(model_, nullptr);
}

TEST_F(ArchiveInMemory, IsRegisteredWithADevice) {
    const std::string archive = archiveOf(packageOf(affineNetwork()));
    ASSERT_THAT(
        client_.getModel(archive.data(), archive.size(), keys_, model_, Device(), EngineOptions()),
        IsOk());
    expectAffineNumbers();
    EXPECT_THAT(client_.queryRuntimeStatus().getLoadedModels(), ElementsAre(model_));
}

TEST_F(ArchiveInMemory, IsNotRegisteredWithAType) {
    ASSERT_THAT(loadArchive(archiveOf(packageOf(affineNetwork()))), IsOk());
    EXPECT_THAT(client_.queryRuntimeStatus().getLoadedModels(), IsEmpty());
}

TEST_F(ArchiveInMemory, CannotBeLoadedAgainAfterUnloading) {
    const std::string text =
        "The package was in memory, which the library did not keep: load it from there again";
    const auto reload = [](QuavinModel& model, const std::shared_ptr<ModelMetadata>& metadata) {
        try {
            return model.load(metadata);
        } catch (...) {
            return getStatusFromCurrentException();
        }
    };
    ASSERT_THAT(loadArchive(archiveOf(packageOf(affineNetwork()))), IsOk());
    const auto metadata = model_->getMetadata();
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    EXPECT_THAT(reload(*model_, metadata), IsStatus(FILE_ERROR, text));
    EXPECT_THAT(client_.getModel(metadata, model_, QuavinModelType::Openvino),
                IsStatus(FILE_ERROR, text));
    std::vector<ModelFeatureDescriptor> ports;
    EXPECT_THAT(describeNetwork(*metadata, ports, ports), IsStatus(FILE_ERROR, text));
}

TEST_F(ArchiveInMemory, KeepsItsNetworkIfLoadedAgainWithoutUnloading) {
    ASSERT_THAT(loadArchive(archiveOf(packageOf(affineNetwork()))), IsOk());
    ASSERT_THAT(model_->load(model_->getMetadata()), IsOk());
    expectAffineNumbers();
}

TEST_F(ArchiveInMemory, CanBeLoadedAgainFromADirectoryThatTheHostSets) {
    ASSERT_THAT(loadArchive(archiveOf(packageOf(affineNetwork()))), IsOk());
    const auto metadata = model_->getMetadata();
    ASSERT_THAT(client_.unloadModel(model_), IsOk());
    writePackage(directory_, affineNetwork());
    metadata->setRootDir(Filepath(directory_.text()));
    ASSERT_THAT(model_->load(metadata), IsOk());
    expectAffineNumbers();
}

TEST_F(ArchiveInMemory, CanBeCloned) {
    keys_.setArchiveKey(countingKey().data());
    ASSERT_THAT(loadArchive(securedArchiveOf(packageOf(affineNetwork()), countingKey())), IsOk());
    std::shared_ptr<QuavinModel> clone;
    ASSERT_THAT(client_.cloneModel(model_, clone), IsOk());
    model_ = clone;
    clone.reset();
    expectAffineNumbers();  // the original is gone
}

TEST_F(ArchiveInMemory, IsUsedWithTheOptionsGiven) {
    EngineOptions options;
    options.threads = 1;
    ASSERT_THAT(loadArchive(archiveOf(packageOf(affineNetwork())), options), IsOk());
    EngineInfo info;
    ASSERT_THAT(model_->getEngineInfo(info), IsOk());
    EXPECT_EQ(info.threads, 1);
    options.threads = -1;
    const auto before = model_;
    EXPECT_THAT(
        loadArchive(archiveOf(packageOf(affineNetwork())), options),
        IsStatus(INVALID_ARGUMENTS, "EngineOptions::threads is -1, but must be from 0 to 1024"));
    EXPECT_EQ(model_, before);
}

TEST_F(ArchiveInMemory, IsReadNotMappedWhateverTheOptions) {
    EngineOptions options;
    options.mapWeights = true;
    ASSERT_THAT(loadArchive(archiveOf(packageOf(affineNetwork())), options), IsOk());
    expectAffineNumbers();
}

TEST_F(ArchiveInMemory, MustNotBeNull) {
    EXPECT_THAT(client_.getModel(nullptr, 0, keys_, model_, QuavinModelType::Openvino, {}),
                IsStatus(INVALID_ARGUMENTS, "The archive must not be null"));
    EXPECT_THAT(client_.getModel(nullptr, 1024, keys_, model_, Device(), {}),
                IsStatus(INVALID_ARGUMENTS, "The archive must not be null"));
}

TEST_F(ArchiveInMemory, CutAnywhereIsRefused) {
    const std::string whole = archiveOf(packageOf(affineNetwork()));
    const std::string entries = whole.substr(0, whole.size() - tarEnd().size());
    for (std::size_t size = 0; size <= entries.size(); size += 128) {
        EXPECT_THAT(loadArchive(entries.substr(0, size)),
                    IsStatusWith(INVALID_ARGUMENTS, HasSubstr("Archive entry ")))
            << size;
        EXPECT_EQ(model_, nullptr);
    }
}

TEST_F(ArchiveInMemory, WithAHostileEntryIsRefused) {
    const std::string package = [] {
        const std::string whole = archiveOf(packageOf(affineNetwork()));
        return whole.substr(0, whole.size() - tarEnd().size());
    }();
    struct Case {
        std::string entry;
        STATUS_CODE code;
        std::string text;
    };
    TarFields link = tarFields("link", '2');
    link.linkName = "/etc/passwd";
    for (const Case& hostile :
         {Case{tarFile("../evil"), INVALID_ARGUMENTS, "its name contains \"..\""},
          Case{tarFile("/evil"), INVALID_ARGUMENTS, "its name is absolute"},
          Case{tarFile("C:evil"), INVALID_ARGUMENTS, "its name begins with a drive letter"},
          Case{tarEntry(link), TAR_UNSUPPORTED_ENTRY, "it is neither a file nor a directory"},
          Case{gnuLongName(std::string(5000, 'x')) + tarFile("x"), INVALID_ARGUMENTS,
               "its name is longer than 4096 bytes"},
          Case{std::string(512, 'x'), TAR_CHECKSUM_MISMATCH, "the header's checksum is wrong"}}) {
        EXPECT_THAT(loadArchive(package + hostile.entry + tarEnd()),
                    IsStatusWith(hostile.code, HasSubstr(hostile.text)));
        EXPECT_EQ(model_, nullptr);
    }
}

TEST_F(ArchiveInMemory, WithoutAManifestIsRefused) {
    EXPECT_THAT(loadArchive(tarEnd()),
                IsStatus(MODEL_METADATA_ERROR, "The archive contains no manifest.json"));
}

TEST_F(ArchiveInMemory, WithAManifestThatIsNoneIsRefused) {
    EXPECT_THAT(loadArchive(archiveOf({{"manifest.json", "{"}})),
                IsStatus(MODEL_METADATA_ERROR, "The bytes in memory are not a manifest"));
    EXPECT_THAT(loadArchive(archiveOf({{"manifest.json", "{}"}})),
                IsStatus(MODEL_METADATA_ERROR, "No target found in root of manifest file"));
}

TEST_F(ArchiveInMemory, WithoutAComponentsFileIsRefusedNamingIt) {
    for (const std::string name : {"net.xml", "net.bin"}) {
        PackageFiles files = packageOf(affineNetwork());
        files.erase(name);
        EXPECT_THAT(
            loadArchive(archiveOf(files)),
            IsStatus(FILE_ERROR, "The package in memory does not contain \"" + name + "\""));
    }
}

TEST_F(ArchiveInMemory, NeverReachesForFilesOutside) {
    PackageText text = describe(affineNetwork());
    writePackage(directory_, affineNetwork());
    const std::string outside = (directory_.path() / "net.xml").u8string();
    std::string escaped;
    for (const char character : outside) {
        escaped += character == '\\' ? "\\\\" : std::string(1, character);
    }
    for (const std::string& path : {escaped, std::string("../net.xml")}) {
        text.components[0].second = path;
        EXPECT_THAT(loadArchive(archiveOf({{"manifest.json", text.manifest()}})),
                    IsStatusWith(FILE_ERROR, HasSubstr("does not contain")));
    }
}

TEST_F(ArchiveInMemory, WithOneComponentOrEmptyPathsIsRefused) {
    PackageText text = describe(affineNetwork());
    text.components = {{"file", "net.xml"}};
    EXPECT_THAT(loadArchive(archiveOf({{"manifest.json", text.manifest()}})),
                IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
    text.components = {{"file", ""}, {"file", "net.bin"}};
    EXPECT_THAT(loadArchive(archiveOf({{"manifest.json", text.manifest()}})),
                IsStatus(INVALID_MODEL_PATH, "No Model Path Defined"));
    text.components = {{"file", "net.xml"}, {"file", ""}};
    EXPECT_THAT(loadArchive(archiveOf({{"manifest.json", text.manifest()}})),
                IsStatus(INVALID_WEIGHTS_PATH, "No Weights Path Defined"));
}

TEST_F(ArchiveInMemory, ForAnotherEngineIsRefused) {
    PackageText text = describe(affineNetwork());
    text.engine = "CoreML";
    EXPECT_THAT(
        loadArchive(archiveOf({{"manifest.json", text.manifest()}})),
        IsStatus(MODEL_METADATA_ERROR, "None of the target applicable for the platform found"));
}

TEST_F(ArchiveInMemory, AnswersThatTheLibraryIsOff) {
    const std::string archive = archiveOf(packageOf(affineNetwork()));
    QuavinClient::terminate();
    EXPECT_THAT(
        loadArchive(archive),
        IsStatus(NOT_INITIALIZED, "Trying to use quavin client before the sdk was initialized!"));
    EXPECT_THAT(QuavinClient::init(QuavinConfig()), IsOk());
}

TEST_F(ArchiveInMemory, IsDescribedWithoutAModel) {
    std::vector<ModelFeatureDescriptor> inputs;
    std::vector<ModelFeatureDescriptor> outputs;
    const PassingBytes plain(archiveOf(packageOf(affineNetwork())));
    ASSERT_THAT(describeNetwork(plain.data(), plain.size(), keys_, inputs, outputs), IsOk());
    ASSERT_EQ(inputs.size(), 1U);
    EXPECT_EQ(inputs[0].name(), "x");
    ASSERT_EQ(outputs.size(), 1U);
    EXPECT_EQ(outputs[0].name(), "y");

    keys_.setArchiveKey(countingKey().data());
    const PassingBytes whole(securedArchiveOf(packageOf(sumNetwork()), countingKey()));
    ASSERT_THAT(describeNetwork(whole.data(), whole.size(), keys_, inputs, outputs), IsOk());
    EXPECT_EQ(inputs[0].tensorDescriptor().shape().size(), 2);
    EXPECT_THAT(describeNetwork(nullptr, 0, keys_, inputs, outputs),
                IsStatus(INVALID_ARGUMENTS, "The archive must not be null"));
    EXPECT_EQ(inputs.size(), 1U);
}

class DiagnosedArchiveInMemory : public MemoryPackageTest {
protected:
    DiagnosedArchiveInMemory()
        : DiagnosedArchiveInMemory(std::make_shared<RecordingLogProcessor>()) {}

    const std::shared_ptr<RecordingLogProcessor> log_;

private:
    explicit DiagnosedArchiveInMemory(const std::shared_ptr<RecordingLogProcessor>& log)
        : MemoryPackageTest([&log] {
              QuavinConfig config;
              config.SetLogger(log);
              config.SetDiagnostics(true);
              return config;
          }()),
          log_(log) {}
};

TEST_F(DiagnosedArchiveInMemory, IsNamedInMemoryInRecords) {
    PackageText text = describe(affineNetwork());
    text.components = {{"file", "net.xml"}};
    EXPECT_THAT(loadArchive(archiveOf({{"manifest.json", text.manifest()}})), Not(IsOk()));
    text.engine = "CoreML";
    EXPECT_THAT(loadArchive(archiveOf({{"manifest.json", text.manifest()}})), Not(IsOk()));
    EXPECT_THAT(loadArchive(archiveOf({{"manifest.json", "{"}})), Not(IsOk()));
    EXPECT_THAT(log_->messages(),
                ElementsAre(HasSubstr("loading the package \"in memory\": two components named"),
                            HasSubstr("loading the package \"in memory\": the target \"Openvino\""),
                            HasSubstr("reading the manifest in memory: ")));
}

// The engine's message may quote the network.
TEST_F(DiagnosedArchiveInMemory, SecuredAsAWholeIsNotQuoted) {
    keys_.setArchiveKey(countingKey().data());
    ASSERT_THAT(loadArchive(securedArchiveOf(packageOf(affineNetwork()), countingKey())), IsOk());
    inputs_ = {featureOf<std::int32_t>("x", {1, 4}, DataType::INT32, {1, 2, 3, 4})};
    EXPECT_THROW(predict(), MLFrameworkException);
    EXPECT_THAT(log_->messages(),
                ElementsAre("predict: the engine failed; its message is withheld because "
                            "a component is secured and the message may quote it"));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
