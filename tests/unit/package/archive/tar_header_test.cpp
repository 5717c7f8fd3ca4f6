#include "package/archive/tar_header.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "support/tar_archive.h"

namespace VelmoraQuavin::internal {
namespace {

using testing::tarFields;
using testing::TarFields;

// Holds the bytes of a header and dereferences to a view of them.
class Shown {
public:
    explicit Shown(const TarFields& fields, uint64 contentSize = 0)
        : bytes_(testing::tarHeader(fields, contentSize)) {}
    explicit Shown(std::string bytes) : bytes_(std::move(bytes)) {}

    TarHeader operator*() const { return TarHeader(data()); }
    const unsigned char* data() const {
        return reinterpret_cast<const unsigned char*>(bytes_.data());
    }

private:
    std::string bytes_;
};

TEST(TarBlocksOf, RoundsUpToWholeBlocks) {
    EXPECT_EQ(tarBlocksOf(0), 0u);
    EXPECT_EQ(tarBlocksOf(1), 1u);
    EXPECT_EQ(tarBlocksOf(511), 1u);
    EXPECT_EQ(tarBlocksOf(512), 1u);
    EXPECT_EQ(tarBlocksOf(513), 2u);
    EXPECT_EQ(tarBlocksOf(1024), 2u);
}

TEST(TarBlocksOf, DoesNotOverflow) {
    // 2^64 / 2^9
    EXPECT_EQ(tarBlocksOf(std::numeric_limits<uint64>::max()), 36028797018963968u);
}

TEST(JoinTarName, InsertsASlashAfterAPrefix) {
    EXPECT_EQ(joinTarName("folder", "file"), "folder/file");
    EXPECT_EQ(joinTarName("", "file"), "file");
    EXPECT_EQ(joinTarName("folder/", "file"), "folder//file");
    EXPECT_EQ(joinTarName("folder", ""), "folder/");
}

TEST(TarHeaderTest, AZeroFirstByteMarksTheEnd) {
    EXPECT_TRUE((*Shown(std::string(512, '\0'))).isEnd());
    EXPECT_TRUE((*Shown('\0' + std::string(511, 'x'))).isEnd());
    EXPECT_FALSE((*Shown('x' + std::string(511, '\0'))).isEnd());
}

TEST(TarHeaderTest, NamesEndAtAZeroByteOrAtTheEndOfTheField) {
    EXPECT_EQ((*Shown(tarFields("file"))).name(), "file");
    EXPECT_EQ((*Shown(tarFields(std::string("file\0behind", 11)))).name(), "file");
    const std::string hundred(100, 'n');
    EXPECT_EQ((*Shown(tarFields(hundred))).name(), hundred);
}

TEST(TarHeaderTest, PrefixesEndAtAZeroByteOrAtTheEndOfTheField) {
    TarFields fields = tarFields("file");
    fields.prefix = std::string("folder\0behind", 13);
    EXPECT_EQ((*Shown(fields)).prefix(), "folder");
    fields.prefix = std::string(155, 'p');
    fields.patches = {{500, "behind"}};
    EXPECT_EQ((*Shown(fields)).prefix(), std::string(155, 'p'));
}

TEST(TarHeaderTest, OnlyUstarWithAZeroByteHasAPrefix) {
    TarFields fields = tarFields("file");
    fields.prefix = "folder";
    for (const std::string& magic :
         {testing::kGnuMagic, std::string("ustar 00"), std::string("ustaR\0", 6),
          std::string("Ustar\0", 6), std::string("ustar"), std::string()}) {
        fields.magic = magic;
        // "ustar" gets its final zero byte from the padding of the field.
        EXPECT_EQ((*Shown(fields)).prefix(), magic == "ustar" ? "folder" : "") << magic;
    }
}

TEST(TarHeaderTest, TypeAndSizeAreReturnedUnparsed) {
    TarFields fields = tarFields("file", '\xFF');
    fields.size = "12 34 567890";
    EXPECT_EQ((*Shown(fields)).type(), '\xFF');
    EXPECT_EQ((*Shown(fields)).sizeField(), "12 34 567890");
    EXPECT_EQ((*Shown(tarFields("file"), 513)).sizeField(), std::string("00000001001\0", 12));
}

TEST(TarHeaderTest, TheContentFollowsTheHeader) {
    const Shown header(tarFields("file"));
    EXPECT_EQ((*header).content(), header.data() + 512);
}

TEST(TarHeaderTest, TheChecksumCoversEveryByteButItsOwnLastTwo) {
    const std::string good = testing::tarHeader(tarFields("file"), 7);
    EXPECT_TRUE((*Shown(good)).checksumMatches());
    for (std::size_t place = 0; place < good.size(); ++place) {
        std::string changed = good;
        changed[place] = static_cast<char>(changed[place] ^ 0x80);
        EXPECT_EQ((*Shown(changed)).checksumMatches(), place == 154 || place == 155) << place;
    }
}

TEST(TarHeaderTest, TheLargestSumHasSixDigits) {
    std::string header(512, '\xFF');
    header.replace(148, 8, "373410xx");  // 504 * 255 + 8 * 32 = 128776
    EXPECT_TRUE((*Shown(header)).checksumMatches());
}

}  // namespace
}  // namespace VelmoraQuavin::internal
