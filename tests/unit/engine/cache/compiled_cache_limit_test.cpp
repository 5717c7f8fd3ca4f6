#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "cache/cache_fixture.h"

namespace VelmoraQuavin::internal {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

constexpr std::size_t kContentSize = 36;
constexpr std::size_t kEntrySize = kHeaderSize + kContentSize;

class CacheLimit : public CacheFixture {
protected:
    // Stores an entry into a cache with a limit.
    std::string put(const std::string& name, std::uint64_t limit, std::size_t size = kContentSize) {
        return CompiledCache(directory_.text(), limit)
            .store(entryNamed(name), *checksum_, bufferWith(std::string(size, 'x')));
    }
    // Stores an entry that appears to have been written some hours ago.
    void putHoursAgo(const std::string& name, int hours) {
        EXPECT_EQ(put(name, 0), "");
        makeOlder(entryNamed(name).fileName(), hours);
    }
    void makeOlder(const std::string& file, int hours) {
        const fs::path path = directory_.path() / fs::u8path(file);
        fs::last_write_time(path, fs::last_write_time(path) - std::chrono::hours(hours));
    }
    // The names, out of a few, under which there are entries.
    std::vector<std::string> present() {
        std::vector<std::string> names;
        for (const char* name : {"a", "b", "c", "d", "e"}) {
            if (fs::exists(directory_.path() / entryNamed(name).fileName())) {
                EXPECT_TRUE(find(entryNamed(name), *checksum_).has_value());
                names.emplace_back(name);
            }
        }
        return names;
    }
};

TEST_F(CacheLimit, TheEntriesWrittenLongestAgoAreRemoved) {
    putHoursAgo("b", 4);
    putHoursAgo("d", 3);
    putHoursAgo("a", 2);
    putHoursAgo("c", 1);
    EXPECT_EQ(put("e", 3 * kEntrySize), "");
    EXPECT_THAT(present(), ElementsAre("a", "c", "e"));
}

TEST_F(CacheLimit, NothingIsRemovedUntilTheLimitIsPassed) {
    putHoursAgo("a", 2);
    putHoursAgo("b", 1);
    EXPECT_EQ(put("c", 3 * kEntrySize), "");
    EXPECT_THAT(present(), ElementsAre("a", "b", "c"));
    EXPECT_EQ(put("c", 3 * kEntrySize - 1), "");
    EXPECT_THAT(present(), ElementsAre("b", "c"));
}

TEST_F(CacheLimit, ZeroIsNoLimit) {
    putHoursAgo("a", 1000);
    EXPECT_EQ(put("b", 0, 100'000), "");
    EXPECT_THAT(present(), ElementsAre("a", "b"));
}

TEST_F(CacheLimit, AnEntryThatIsReplacedIsNotCountedTwice) {
    putHoursAgo("a", 2);
    putHoursAgo("b", 1);
    EXPECT_EQ(put("a", 2 * kEntrySize), "");
    EXPECT_THAT(present(), ElementsAre("a", "b"));
}

TEST_F(CacheLimit, TheNewEntryStaysEvenIfOthersSeemNewer) {
    putHoursAgo("a", -5);
    putHoursAgo("b", -4);
    EXPECT_EQ(put("c", kEntrySize), "");
    EXPECT_THAT(present(), ElementsAre("c"));
}

TEST_F(CacheLimit, AnOlderEntryIsNotKeptInPlaceOfANewerOneThatIsLarger) {
    putHoursAgo("a", 2);
    EXPECT_EQ(put("b", 0, 10 * kContentSize), "");
    makeOlder(entryNamed("b").fileName(), 1);
    EXPECT_EQ(put("c", 2 * kEntrySize), "");
    EXPECT_THAT(present(), ElementsAre("c"));
}

TEST_F(CacheLimit, AnEntryLargerThanTheLimitIsNotWritten) {
    putHoursAgo("a", 1);
    EXPECT_THAT(put("b", kEntrySize - 1),
                AllOf(EndsWith("\" would take 100 bytes, more than the limit of 99"),
                      HasSubstr(entryNamed("b").fileName())));
    EXPECT_THAT(present(), ElementsAre("a"));
    EXPECT_EQ(put("b", kEntrySize), "");
    EXPECT_THAT(present(), ElementsAre("b"));
}

TEST_F(CacheLimit, NothingButEntriesIsCountedOrRemoved) {
    const std::string name = entryNamed("a").fileName();
    const std::vector<std::string> others = {
        "weights.bin",
        "x" + name,
        name + ".bak",
        "größe" + name,
        ".quavin-7",
        name.substr(1),
        std::string(32, 'G') + ".quavin-network",
        "folder/" + name,
    };
    for (const std::string& other : others) {
        directory_.write(other, std::string(1000, 'x'));
        makeOlder(other, 1000);
    }
    fs::create_directory(directory_.path() / entryNamed("directory").fileName());
    putHoursAgo("b", 1);
    EXPECT_EQ(put("c", 2 * kEntrySize), "");
    EXPECT_THAT(present(), ElementsAre("b", "c"));
    EXPECT_EQ(put("d", kEntrySize), "");
    EXPECT_THAT(present(), ElementsAre("d"));
    for (const std::string& other : others) {
        EXPECT_EQ(directory_.read(other).size(), 1000U) << other;
    }
    EXPECT_TRUE(fs::is_directory(directory_.path() / entryNamed("directory").fileName()));
}

}  // namespace
}  // namespace VelmoraQuavin::internal
