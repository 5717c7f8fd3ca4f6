#include "engine/cache/compiled_cache.h"

#include <algorithm>
#include <filesystem>

#include "allocation_watch.h"
#include "cache/cache_fixture.h"
#include "support/file_tree.h"
#include "support/unreadable_file.h"

namespace VelmoraQuavin::internal {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Optional;
using ::testing::StartsWith;

const std::string kDamaged = " is damaged, or not the entry that its name says";

class CompiledCacheTest : public CacheFixture, public ::testing::WithParamInterface<SealKind> {
protected:
    std::string fileName() const { return name_.fileName(); }
    std::string stored(std::string_view content) {
        EXPECT_EQ(store(name_, *seal_, content), "");
        return directory_.read(fileName());
    }
    // Expects that a file in the entry's place is not taken for it, and can be replaced.
    void expectMiss(std::string_view file, const std::string& what) {
        directory_.write(fileName(), file);
        EXPECT_EQ(find(name_, *seal_), std::nullopt) << what;
        EXPECT_THAT(problem_, AllOf(StartsWith("\""), EndsWith(fileName() + "\"" + kDamaged)))
            << what;
    }

    const EntryName name_ = entryNamed("network");
    const std::unique_ptr<CacheSeal> seal_ =
        GetParam() == SealKind::kSecret ? secretSealWith(7) : makeChecksumSeal();
};

TEST_P(CompiledCacheTest, FindsWhatWasStored) {
    for (const std::size_t size : {5U, 0U, 1U, 300'000U}) {
        const std::string content(size, 'x');
        EXPECT_EQ(store(name_, *seal_, content), "");
        EXPECT_THAT(find(name_, *seal_), Optional(content));
    }
    EXPECT_EQ(testing::treeOf(directory_.path()).size(), 1U);
}

TEST_P(CompiledCacheTest, AnAbsentEntryIsMissedInSilence) {
    EXPECT_EQ(find(name_, *seal_), std::nullopt);
    EXPECT_EQ(problem_, "");
    const CompiledCache nowhere(directory_.entry("missing"), 0);
    EXPECT_FALSE(nowhere.find(name_, *seal_, problem_).has_value());
    EXPECT_EQ(problem_, "");
}

TEST_P(CompiledCacheTest, EntriesAreApart) {
    EXPECT_EQ(store(name_, *seal_, "one"), "");
    EXPECT_EQ(store(entryNamed("other"), *seal_, "two"), "");
    EXPECT_THAT(find(name_, *seal_), Optional(std::string("one")));
    EXPECT_THAT(find(entryNamed("other"), *seal_), Optional(std::string("two")));
}

TEST_P(CompiledCacheTest, AFlippedBitAnywhereIsAMiss) {
    const std::string file = stored("the compiled network");
    ASSERT_EQ(file.size(), kHeaderSize + 20);
    for (std::size_t i = 0; i < file.size(); ++i) {
        for (const char bit : {'\x01', '\x80'}) {
            std::string damaged = file;
            damaged[i] = static_cast<char>(damaged[i] ^ bit);
            expectMiss(damaged, "byte " + std::to_string(i));
        }
    }
    directory_.write(fileName(), file);
    EXPECT_THAT(find(name_, *seal_), Optional(std::string("the compiled network")));
}

TEST_P(CompiledCacheTest, AShorterOrLongerFileIsAMiss) {
    const std::string file = stored("the compiled network");
    for (std::size_t size = 0; size < file.size(); ++size) {
        expectMiss(file.substr(0, size), "first " + std::to_string(size));
    }
    expectMiss(file + '\0', "longer");
    expectMiss(file + file, "twice");
}

TEST_P(CompiledCacheTest, AForeignFileIsAMissAndIsReplaced) {
    expectMiss("not a compiled network", "short");
    expectMiss(std::string(100'000, 'x'), "long");
    expectMiss(std::string(100'000, '\0'), "zeros");
    EXPECT_EQ(store(name_, *seal_, "content"), "");
    EXPECT_THAT(find(name_, *seal_), Optional(std::string("content")));
}

TEST_P(CompiledCacheTest, AnEntryUnderAnothersNameIsAMiss) {
    EXPECT_EQ(store(entryNamed("other"), *seal_, "other content"), "");
    expectMiss(directory_.read(entryNamed("other").fileName()), "other entry");
}

TEST_P(CompiledCacheTest, AnEntryUnderAnothersNameIsAMissEvenIfItsHeaderSaysSo) {
    EXPECT_EQ(store(entryNamed("other"), *seal_, "content"), "");
    std::string file = directory_.read(entryNamed("other").fileName());
    const HeaderStart start = headerStart(seal_->kind(), name_, 7);
    std::copy(start.begin(), start.end(), file.begin());
    expectMiss(file, "renamed");
}

TEST_P(CompiledCacheTest, ADirectoryInPlaceOfAnEntryIsAMissAndIsKept) {
    fs::create_directory(directory_.path() / fileName());
    EXPECT_EQ(find(name_, *seal_), std::nullopt);
    EXPECT_THAT(problem_, EndsWith(" is not a regular file"));
    EXPECT_THAT(store(name_, *seal_, "content"), HasSubstr("\" cannot be written: "));
    EXPECT_EQ(testing::treeOf(directory_.path()),
              (testing::FileTree{{fileName(), testing::kDirectoryInTree}}));
}

TEST_P(CompiledCacheTest, AnEntryThatCannotBeReadIsAMiss) {
    EXPECT_EQ(store(name_, *seal_, "content"), "");
    const testing::UnreadableFile unreadable(directory_.path() / fileName());
    EXPECT_EQ(find(name_, *seal_), std::nullopt);
    EXPECT_THAT(problem_, HasSubstr("\" cannot be read: "));
}

TEST_P(CompiledCacheTest, StoringIntoAMissingDirectoryFails) {
    const CompiledCache nowhere(directory_.entry("missing"), 0);
    EXPECT_THAT(nowhere.store(name_, *seal_, bufferWith("content")),
                AllOf(HasSubstr("missing"), HasSubstr("\" cannot be created: ")));
    EXPECT_FALSE(fs::exists(directory_.path() / "missing"));
}

TEST_P(CompiledCacheTest, TheDirectoryMayHaveAnyLettersInItsName) {
    fs::create_directory(directory_.path() / fs::u8path("größe 日本"));
    const CompiledCache cache(directory_.entry("größe 日本"), 1000);
    EXPECT_EQ(cache.store(name_, *seal_, bufferWith("content")), "");
    EXPECT_TRUE(cache.find(name_, *seal_, problem_).has_value());
    EXPECT_EQ(problem_, "");
}

TEST_P(CompiledCacheTest, ADirectoryThatIsNotUtf8IsReportedWhenStoring) {
    const CompiledCache cache("\xFF", 0);
    EXPECT_FALSE(cache.find(name_, *seal_, problem_).has_value());
    EXPECT_EQ(problem_, "");
    EXPECT_EQ(cache.store(name_, *seal_, bufferWith("content")), "path not UTF-8");
}

TEST_P(CompiledCacheTest, RunningOutOfMemoryIsAMissOrAFailedStore) {
    EXPECT_EQ(store(name_, *seal_, "old"), "");
    int failed = 0;
    for (int which = 1;; ++which) {
        std::optional<EntryBuffer> found;
        const testing::AllocationFailure failure(which);
        found = cache_.find(name_, *seal_, problem_);
        if (!failure.happened()) {
            EXPECT_TRUE(found.has_value());
            break;
        }
        ++failed;
        EXPECT_EQ(problem_, "") << which;
    }
    for (int which = 1;; ++which) {
        EntryBuffer buffer = bufferWith("new");
        const CompiledCache limited(directory_.text(), 1000);
        std::string problem;
        bool happened = false;
        {
            const testing::AllocationFailure failure(which);
            problem = limited.store(name_, *seal_, std::move(buffer));
            happened = failure.happened();
        }
        EXPECT_EQ(testing::treeOf(directory_.path()).size(), 1U);
        if (!happened) {
            EXPECT_EQ(problem, "");
            break;
        }
        ++failed;
        EXPECT_TRUE(find(name_, *seal_).has_value()) << which;
    }
    EXPECT_GT(failed, 4);
    EXPECT_THAT(find(name_, *seal_), Optional(std::string("new")));
}

INSTANTIATE_TEST_SUITE_P(EverySeal, CompiledCacheTest, ::testing::ValuesIn(sealKinds()),
                         [](const auto& test) {
                             return test.param == SealKind::kSecret ? "Secret" : "Checksum";
                         });

}  // namespace
}  // namespace VelmoraQuavin::internal
