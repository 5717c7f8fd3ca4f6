#include <gtest/gtest.h>

#include <memory>

#include "quavin/client.h"
#include "support/recording_log_processor.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using testing::IsStatus;
using testing::RecordingLogProcessor;

TEST(QuavinConfigTest, HasNoLoggerByDefault) {
    EXPECT_EQ(QuavinConfig().GetLogger(), nullptr);
}

TEST(QuavinConfigTest, LoadIsAFailureWithoutAText) {
    EXPECT_THAT(QuavinConfig().load(), IsStatus(FAILURE, ""));
}

TEST(QuavinConfigTest, RequestsNoDiagnosticsByDefault) {
    EXPECT_FALSE(QuavinConfig().GetDiagnostics());
}

TEST(QuavinConfigTest, CopiesKeepTheDiagnosticsSetting) {
    QuavinConfig config;
    config.SetDiagnostics(true);
    EXPECT_TRUE(QuavinConfig(config).GetDiagnostics());
}

TEST(QuavinConfigTest, SharesItsLogger) {
    const auto logger = std::make_shared<RecordingLogProcessor>();
    QuavinConfig config;
    config.SetLogger(logger);
    EXPECT_EQ(config.GetLogger(), logger);
    EXPECT_EQ(QuavinConfig(config).GetLogger(), logger);
}

TEST(QuavinConfigTest, SettingAnotherLoggerReleasesTheOldOne) {
    auto logger = std::make_shared<RecordingLogProcessor>();
    const std::weak_ptr<RecordingLogProcessor> watched = logger;
    QuavinConfig config;
    config.SetLogger(logger);
    logger.reset();
    EXPECT_FALSE(watched.expired());
    config.SetLogger(nullptr);
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(config.GetLogger(), nullptr);
}

}  // namespace
}  // namespace VelmoraQuavin
