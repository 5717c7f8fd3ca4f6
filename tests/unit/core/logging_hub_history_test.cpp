#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/logging_hub.h"
#include "hub_fixture.h"
#include "support/captured_output.h"
#include "support/case_name.h"

namespace VelmoraQuavin::internal {
namespace {

using ::testing::ElementsAreArray;

class FailingLogProcessor : public ILogProcessor {
public:
    void process(const LogRecord& /*record*/) override { throw std::runtime_error("no"); }
};

class LoggingHubHistoryTest : public HubFixture {};

TEST_F(LoggingHubHistoryTest, KeepsTheLatestSeventeenTexts) {
    std::vector<std::string> latest;
    for (int number = 1; number <= 40; ++number) {
        const std::string text = "text " + std::to_string(number);
        reportImportant(text);
        if (number > 40 - 17) {
            latest.push_back(text);
        }
    }
    EXPECT_THAT(history(), ElementsAreArray(latest));
}

TEST_F(LoggingHubHistoryTest, GrowsToSeventeenBeforeDroppingTheOldest) {
    for (int number = 1; number <= 17; ++number) {
        reportImportant(std::to_string(number));
    }
    EXPECT_EQ(history().size(), 17U);
    EXPECT_EQ(history().front(), "1");
    reportImportant("18");
    EXPECT_EQ(history().size(), 17U);
    EXPECT_EQ(history().front(), "2");
}

TEST_F(LoggingHubHistoryTest, KeepsTheTextEvenIfTheProcessorFails) {
    install(std::make_shared<FailingLogProcessor>());
    reportImportant("kept in spite of the failure");
    EXPECT_EQ(history().back(), "kept in spite of the failure");
}

TEST_F(LoggingHubHistoryTest, KeepsTheMessageNotTheFormattedLine) {
    install(std::make_shared<LogProcessorFormatter<DebugLogFormat>>(0, recorder_));
    reportImportant("as it was reported");
    EXPECT_EQ(history().back(), "as it was reported");
}

TEST_F(LoggingHubHistoryTest, DirectReportsAreNotRemembered) {
    const std::vector<std::string> before = history();
    const testing::CapturedOutput output;
    _Report_(true, 1, 3, "direct");
    EXPECT_EQ(history(), before);
}

struct Importance {
    const char* name;
    std::size_t category;
    unsigned level;
    bool important;
};

class ImportanceTest : public HubFixture, public ::testing::WithParamInterface<Importance> {};

TEST_P(ImportanceTest, ComesFromTheLowTwoCategoryBitsOrALevelOfAtLeastThree) {
    const std::vector<std::string> before = history();
    const std::string text = std::string("report ") + GetParam().name;
    _Report_(false, GetParam().category, GetParam().level, text);
    if (GetParam().important) {
        EXPECT_EQ(history().back(), text);
    } else {
        EXPECT_EQ(history(), before);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Records, ImportanceTest,
    ::testing::Values(Importance{"Plain", 0, 0, false}, Importance{"LevelTwo", 0, 2, false},
                      Importance{"CategoryFourLevelTwo", 4, 2, false},
                      Importance{"AllOtherCategories", SIZE_MAX - 3, 2, false},
                      Importance{"CategoryOne", 1, 0, true}, Importance{"CategoryTwo", 2, 0, true},
                      Importance{"CategoryThree", 3, 0, true},
                      Importance{"CategoryFive", 5, 0, true},
                      Importance{"AllCategories", SIZE_MAX, 0, true},
                      Importance{"LevelThree", 0, 3, true}, Importance{"LevelFour", 0, 4, true},
                      Importance{"HighestLevel", 4, UINT32_MAX, true}),
    testing::CaseName());

}  // namespace
}  // namespace VelmoraQuavin::internal
