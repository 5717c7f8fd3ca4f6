#include "recogniser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <sstream>
#include <string>

namespace sketch {
namespace {

using ::testing::HasSubstr;

constexpr std::chrono::minutes kPatience{2};

// A recogniser, and the changes that it tells of.
class Watched {
public:
    explicit Watched(const std::string& package) : recogniser_(package, [this] { changed(); }) {}

    Recogniser& operator*() { return recogniser_; }

    // Waits until there were as many changes since the start.
    Recogniser::Report after(int changes) {
        std::unique_lock lock(mutex_);
        EXPECT_TRUE(wake_.wait_for(lock, kPatience, [&] { return changes_ >= changes; }));
        return recogniser_.report();
    }

    int changes() {
        const std::scoped_lock lock(mutex_);
        return changes_;
    }

    // While one holds this, the model's thread waits in its next change.
    std::unique_lock<std::mutex> hold() { return std::unique_lock(mutex_); }

private:
    void changed() {
        const std::scoped_lock lock(mutex_);
        ++changes_;
        wake_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable wake_;
    int changes_ = 0;
    Recogniser recogniser_;
};

Drawing strokesOf(const std::string& line) {
    Drawing drawing(1);
    std::istringstream words(line);
    for (std::string word; words >> word;) {
        if (word == "|") {
            drawing.emplace_back();
            continue;
        }
        Point point{};
        char comma = 0;
        std::istringstream(word) >> point.x >> comma >> point.y;
        drawing.back().push_back(point);
    }
    return drawing;
}

TEST(SketchRecogniser, ReadsEachDrawnDigit) {
    Watched recogniser(QUAVIN_DIGITS_PACKAGE);
    ASSERT_EQ(recogniser.after(1).state, Recogniser::State::Ready);
    std::ifstream file(SKETCH_DIGITS);
    int digit = 0;
    for (std::string line; std::getline(file, line); ++digit) {
        ASSERT_EQ(line.substr(0, 2), std::to_string(digit) + ":");
        const Image image = imageOf(strokesOf(line.substr(2)));
        (*recogniser).submit(image);
        const Recogniser::Report report = recogniser.after(2 + digit);
        ASSERT_TRUE(report.last) << report.failure;
        EXPECT_EQ(report.last->image, image);
        const Probabilities& all = report.last->probabilities;
        EXPECT_EQ(std::max_element(all.begin(), all.end()) - all.begin(), digit);
        EXPECT_GT(all.at(static_cast<std::size_t>(digit)), 0.9F);
    }
    EXPECT_EQ(digit, 10);
}

TEST(SketchRecogniser, DropsImagesThatANewerOneOvertakes) {
    Watched recogniser(QUAVIN_DIGITS_PACKAGE);
    Image newest{};
    newest.fill(16);
    {
        const auto held = recogniser.hold();
        (*recogniser).submit(Image{});
        (*recogniser).submit(Image{1});
        (*recogniser).submit(newest);
    }
    const Recogniser::Report report = recogniser.after(2);
    ASSERT_TRUE(report.last) << report.failure;
    EXPECT_EQ(report.last->image, newest);
    EXPECT_EQ(recogniser.changes(), 2);
}

TEST(SketchRecogniser, ReportsWhyAPackageCannotBeLoaded) {
    Watched recogniser("there/is/no/such/package");
    const Recogniser::Report report = recogniser.after(1);
    EXPECT_EQ(report.state, Recogniser::State::Failed);
    EXPECT_THAT(report.failure, HasSubstr("there/is/no/such/package"));
    EXPECT_FALSE(report.last);
}

TEST(SketchRecogniser, MayBeDestroyedWhileItLoads) {
    for (int time = 0; time < 3; ++time) {
        Recogniser recogniser(QUAVIN_DIGITS_PACKAGE, [] {});
        recogniser.submit(Image{});
    }
}

}  // namespace
}  // namespace sketch
