// What getModel returns if files can be opened but not read. Only on POSIX systems can the
// library's reads be made to fail in the same process; elsewhere unit tests cover this.

#include <gmock/gmock.h>

#include <filesystem>

#include "integration/get_model_test.h"
#include "integration/signed_package_test.h"
#include "support/recording_log_processor.h"
#include "support/unreadable_file.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

TEST_F(GetModel, AnUnreadableComponentAnswers3) {
    directory_.write("net.bin", "to be read");  // the network has no constants
    for (const char* name : {"net.xml", "net.bin"}) {
        const UnreadableFile unreadable(directory_.path() / name);
        EXPECT_THAT(load(), IsStatus(FILE_ERROR, "File error!")) << name;
        std::vector<ModelFeatureDescriptor> inputs;
        std::vector<ModelFeatureDescriptor> outputs;
        EXPECT_THAT(describeNetwork(*readManifest(), inputs, outputs),
                    IsStatus(FILE_ERROR, "File error!"))
            << name;
    }
    EXPECT_THAT(load(), IsOk());
}

TEST_F(GetModel, AnUnreadableManifestAnswers12) {
    const UnreadableFile unreadable(directory_.path() / "manifest.json");
    EXPECT_THAT(load(), IsStatus(MODEL_METADATA_ERROR, "Failed to open metadata file at " +
                                                           directory_.entry("manifest.json")));
}

TEST_F(SignedPackage, AnUnreadableSignatureAnswers3) {
    write(files_);
    const auto metadata = readManifest();
    const UnreadableFile unreadable(directory_.path() / "model.sig");
    EXPECT_THAT(load(), IsStatus(FILE_ERROR, "File error!"));
    EXPECT_EQ(model_, nullptr);
    std::vector<ModelFeatureDescriptor> ports;
    EXPECT_THAT(describeNetwork(*metadata, ports, ports), IsStatus(FILE_ERROR, "File error!"));
}

/// A host with diagnostics enabled.
class DiagnosedGetModel : public ::testing::Test {
protected:
    DiagnosedGetModel() {
        writePackage(directory_, sumNetwork());
        directory_.write("net.bin", "to be read");  // the network has no constants
    }

    // The records logged during a load.
    std::vector<std::string> recordsOfLoading() {
        auto log = std::make_shared<RecordingLogProcessor>();
        QuavinConfig config;
        config.SetLogger(log);
        config.SetDiagnostics(true);
        const QuavinClientInitTerm library(config);
        std::shared_ptr<QuavinModel> model;
        EXPECT_FALSE(QuavinClient::instance()
                         .getModel(directory_.text(), model, 0, QuavinModelType::Openvino)
                         .ok());
        return log->messages();
    }
    std::string readingOf(const std::string& name) const {
        return std::string("reading the ") + (name == "manifest.json" ? "manifest" : "file") +
               " \"" + directory_.entry(name) + "\": it cannot be ";
    }

    TempDirectory directory_;
};

TEST_F(DiagnosedGetModel, NamesAnUnreadableFileAndTheCause) {
    for (const char* name : {"manifest.json", "net.xml", "net.bin"}) {
        const UnreadableFile unreadable(directory_.path() / name);
        EXPECT_THAT(recordsOfLoading(), ElementsAre(StartsWith(readingOf(name) + "read: ")));
    }
}

TEST_F(DiagnosedGetModel, NamesAMissingFileAndTheCause) {
    for (const char* name : {"net.bin", "net.xml", "manifest.json"}) {
        std::filesystem::remove(directory_.path() / name);
        EXPECT_THAT(recordsOfLoading(), ElementsAre(StartsWith(readingOf(name) + "opened: ")));
    }
}

}  // namespace
}  // namespace VelmoraQuavin::testing
