#include "core/diagnostics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "hub_fixture.h"

namespace VelmoraQuavin::internal {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Counts records and notes whether two were ever delivered at once.
class OverlapCounter : public ILogProcessor {
public:
    void process(const LogRecord& /*record*/) override {
        if (inside_.fetch_add(1) != 0) {
            overlapped_ = true;
        }
        std::this_thread::yield();
        ++records_;
        inside_.fetch_sub(1);
    }
    bool overlapped() const { return overlapped_; }
    int records() const { return records_; }

private:
    std::atomic<int> inside_{0};
    std::atomic<bool> overlapped_{false};
    int records_ = 0;  // not atomic: the delivery lock guards it
};

class ReportingLogProcessor : public ILogProcessor {
public:
    void process(const LogRecord& /*record*/) override {
        ++records_;
        diagnose([] { return "again"; });
    }
    int records() const { return records_; }

private:
    int records_ = 0;
};

class DiagnosticsTest : public HubFixture {
protected:
    DiagnosticsTest() { setDiagnostics(true); }
    ~DiagnosticsTest() override { setDiagnostics(false); }
};

TEST_F(DiagnosticsTest, NothingIsReportedUnlessEnabled) {
    setDiagnostics(false);
    bool textWasBuilt = false;
    diagnose([&] {
        textWasBuilt = true;
        return "hidden";
    });
    EXPECT_FALSE(textWasBuilt);
    EXPECT_THAT(recorder_->messages(), IsEmpty());
}

TEST_F(DiagnosticsTest, RecordsReachTheInstalledProcessorWithFixedCategoryAndLevel) {
    diagnose([] { return "why it failed"; });
    EXPECT_THAT(recorder_->messages(), ElementsAre("why it failed"));
    EXPECT_EQ(recorder_->records().front().category, 4U);
    EXPECT_EQ(recorder_->records().front().level, 2U);
}

TEST_F(DiagnosticsTest, RecordsAreNotAddedToTheHistory) {
    const std::vector<std::string> before = history();
    diagnose([] { return "not important"; });
    EXPECT_EQ(history(), before);
}

TEST_F(DiagnosticsTest, UnsafeCharactersAreReplacedAndARecordIsOneLine) {
    // NOLINTNEXTLINE(misc-misleading-bidirectional): what is replaced
    diagnose([] { return "path \"a\nb\": \t\x1b[31m\xE2\x80\xAE\xFF"; });
    EXPECT_THAT(recorder_->messages(), ElementsAre("path \"a b\":  ?[31m??"));
}

TEST_F(DiagnosticsTest, AnEmptyTextIsNotReported) {
    diagnose([] { return ""; });
    EXPECT_THAT(recorder_->messages(), IsEmpty());
}

TEST_F(DiagnosticsTest, TextsAreKeptForLaterOnlyWhileEnabled) {
    String kept = "before";
    keepForDiagnostics(kept, [] { return "after"; });
    EXPECT_EQ(kept, "after");
    keepForDiagnostics(kept, []() -> String { throw std::bad_alloc(); });
    EXPECT_EQ(kept, "after");
    setDiagnostics(false);
    keepForDiagnostics(kept, [] { return "off"; });
    EXPECT_EQ(kept, "after");
}

TEST_F(DiagnosticsTest, AFailingProcessorIsIgnored) {
    class FailingLogProcessor : public ILogProcessor {
    public:
        void process(const LogRecord& /*record*/) override { throw 42; }
    };
    install(std::make_shared<FailingLogProcessor>());
    EXPECT_NO_THROW(diagnose([] { return "lost"; }));
}

TEST(NameListTest, QuotesNamesAndTruncatesLongListsAndNames) {
    NameList names;
    EXPECT_TRUE(names.empty());
    EXPECT_EQ(names.text(), "");
    names.add("a");
    names.add("");
    names.add(std::string(81, 'b'));
    EXPECT_FALSE(names.empty());
    EXPECT_EQ(names.text(), "\"a\", \"\", \"" + std::string(80, 'b') + "...\"");

    NameList many;
    for (const char* name : {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}) {
        many.add(name);
    }
    EXPECT_EQ(many.text(), R"("1", "2", "3", "4", "5", "6", "7", "8" and 2 more)");
}

TEST_F(DiagnosticsTest, AFailureToBuildTheTextIsIgnored) {
    EXPECT_NO_THROW(diagnose([]() -> String { throw std::bad_alloc(); }));
    EXPECT_THAT(recorder_->messages(), IsEmpty());
}

TEST_F(DiagnosticsTest, AProcessorMayReportDiagnosticsItself) {
    const auto processor = std::make_shared<ReportingLogProcessor>();
    install(processor);
    diagnose([] { return "first"; });
    EXPECT_EQ(processor->records(), 9);  // the hub's limit on nested reports
}

TEST_F(DiagnosticsTest, DiagnosticsAndHostReportsAreDeliveredOneAtATime) {
    constexpr int kThreads = 8;
    constexpr int kRecords = 200;
    const auto counter = std::make_shared<OverlapCounter>();
    install(counter);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread] {
            for (int i = 0; i < kRecords; ++i) {
                if (thread % 2 == 0) {
                    diagnose([] { return "from the library"; });
                } else {
                    report("from the host");
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_FALSE(counter->overlapped());
    EXPECT_EQ(counter->records(), kThreads * kRecords);
}

}  // namespace
}  // namespace VelmoraQuavin::internal
