// What a host that enables diagnostics learns about a manifest that cannot be used.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "core/diagnostics.h"
#include "core/logging_hub.h"
#include "package/manifest/target_problem.h"
#include "support/recording_log_processor.h"
#include "unit/package/manifest/manifest_fixture.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::IsOk;
using testing::IsStatus;

class ManifestDiagnostics : public testing::ManifestFixture {
protected:
    ManifestDiagnostics() {
        internal::setDiagnostics(true);
        internal::LoggingHub::find()->setProcessor(recorder_);
    }
    ~ManifestDiagnostics() override {
        internal::LoggingHub::find()->setProcessor(nullptr);
        internal::setDiagnostics(false);
    }

    std::vector<std::string> records() const { return recorder_->messages(); }
    std::string reading() const {
        return "reading the manifest \"" + directory_.entry("manifest.json") + "\": ";
    }
    // The part of the only record after the manifest's name.
    std::string reasonFor(const std::string& manifest) {
        recorder_->clear();
        EXPECT_THAT(load(manifest), IsStatus(MODEL_METADATA_ERROR, failedToOpen()));
        EXPECT_EQ(records().size(), 1U);
        const std::string record = records().empty() ? "" : records().front();
        EXPECT_EQ(record.substr(0, reading().size()), reading());
        return record.substr(reading().size());
    }
    // The record for a manifest without a matching target.
    std::string missingTarget(const std::string& manifest) {
        recorder_->clear();
        EXPECT_THAT(load(manifest), IsOk());
        EXPECT_THAT(records(), IsEmpty());
        internal::diagnoseMissingTarget(metadata_, "Openvino");
        return records().at(0);
    }

    const std::shared_ptr<testing::RecordingLogProcessor> recorder_ =
        std::make_shared<testing::RecordingLogProcessor>();
};

TEST_F(ManifestDiagnostics, AJsonErrorIsReportedWithItsLineAndColumn) {
    EXPECT_EQ(reasonFor("{\"id\": \"an id\",\n  \"version\" 3}"),
              "line 2, column 13: Missing a colon after a name of object member");
    EXPECT_EQ(reasonFor("{\r\n\"targets\": {}\r\n\"id\": \"x\"}"),
              "line 3, column 1: Missing a comma or '}' after an object member");
    EXPECT_EQ(reasonFor("{\"targets\": {},}"),
              "line 1, column 16: Missing a name for object member");
    EXPECT_EQ(reasonFor("targets"), "line 1, column 2: Invalid value");
}

TEST_F(ManifestDiagnostics, ColumnsCountCharactersButNotTheByteOrderMark) {
    // After seven characters, two of which take two bytes.
    EXPECT_EQ(reasonFor("\xEF\xBB\xBF{\"\xC3\xA4\xC3\xB6\": x}"),
              "line 1, column 8: Invalid value");
}

TEST_F(ManifestDiagnostics, LeadingBlanksAreCounted) {
    EXPECT_EQ(reasonFor("\n\n  {'id': 1}"), "line 3, column 4: Missing a name for object member");
}

TEST_F(ManifestDiagnostics, DataAfterTheObjectIsReported) {
    EXPECT_EQ(reasonFor("{\"targets\": {}}\nx"),
              "line 2, column 1: The document root must not be followed by other values");
    EXPECT_EQ(reasonFor(std::string("{\"targets\": {}}\0x", 17)), "line 1, column 16: a zero byte");
}

TEST_F(ManifestDiagnostics, ARootThatIsNotAnObjectIsReported) {
    EXPECT_EQ(reasonFor("[]"), "it contains an array, not an object");
    EXPECT_EQ(reasonFor("3"), "it contains a number, not an object");
    EXPECT_EQ(reasonFor("\"targets\""), "it contains a string, not an object");
    EXPECT_EQ(reasonFor("null"), "it contains null, not an object");
    EXPECT_EQ(reasonFor("true"), "it contains a boolean, not an object");
    EXPECT_EQ(reasonFor(" \n"), "it is empty");
}

TEST_F(ManifestDiagnostics, MissingTargetsAreReportedWithTheMembersPresent) {
    EXPECT_THAT(load(R"({"id": "x", "Targets": {}})"),
                IsStatus(MODEL_METADATA_ERROR, "No target found in root of manifest file"));
    EXPECT_THAT(records(), ElementsAre(reading() + R"(it has the members "id", "Targets")"));
}

TEST_F(ManifestDiagnostics, AMissingTargetIsReportedWithTheTargetsPresent) {
    const std::string loading = "loading the package \"" + directory_.text() +
                                R"(": the target "Openvino" is needed, but )";
    EXPECT_EQ(missingTarget(R"({"targets": {"OpenVino": {}, "CoreML": {}}})"),
              loading + R"("targets" has the members "OpenVino", "CoreML")");
    EXPECT_EQ(missingTarget(R"({"targets": {}})"), loading + R"("targets" has no members)");
    EXPECT_EQ(missingTarget(R"({"targets": []})"), loading + R"("targets" is an array)");
    EXPECT_EQ(missingTarget(R"({"targets": "Openvino"})"), loading + R"("targets" is a string)");
}

TEST_F(ManifestDiagnostics, MetadataThatWasNotLoadedIsReportedWithoutTargets) {
    internal::diagnoseMissingTarget(ModelMetadata(), "Openvino");
    EXPECT_THAT(records(),
                ElementsAre("loading the package \"\": the target \"Openvino\" is needed, "
                            "but the metadata has none"));
}

TEST_F(ManifestDiagnostics, AManifestThatLoadsIsNotReported) {
    EXPECT_THAT(load(R"({"targets": {"Openvino": {}}})"), IsOk());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(ManifestDiagnostics, NothingIsReportedUnlessEnabled) {
    internal::setDiagnostics(false);
    EXPECT_THAT(load("{"), IsStatus(MODEL_METADATA_ERROR, failedToOpen()));
    EXPECT_THAT(load("{}"),
                IsStatus(MODEL_METADATA_ERROR, "No target found in root of manifest file"));
    EXPECT_THAT(records(), IsEmpty());
}

}  // namespace
}  // namespace VelmoraQuavin
