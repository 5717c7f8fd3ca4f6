#include "engine/cache/cache_name.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace VelmoraQuavin::internal {
namespace {

std::string nameOf(const std::vector<std::string>& parts) {
    CacheName name;
    for (const std::string& part : parts) {
        name.add(part);
    }
    return name.entry().fileName();
}

TEST(CacheName, IsTheSameForTheSameParts) {
    EXPECT_EQ(nameOf({"network", "weights"}), nameOf({"network", "weights"}));
    CacheName name;
    name.add("network", 7);
    name.add("weights", 7);
    EXPECT_EQ(name.entry().fileName(), nameOf({"network", "weights"}));
}

TEST(CacheName, DependsOnEveryPartAndOnWhereItEnds) {
    const std::vector<std::vector<std::string>> differing = {
        {},
        {""},
        {"", ""},
        {"a"},
        {"a", ""},
        {"", "a"},
        {"ab", "c"},
        {"a", "bc"},
        {"abc"},
        {"c", "ab"},
        {"a", "b"},
        {"a", "b", "c"},
        {std::string(1, '\0')},
        {std::string(2, '\0')},
    };
    std::set<std::string> names;
    for (const auto& parts : differing) {
        names.insert(nameOf(parts));
    }
    EXPECT_EQ(names.size(), differing.size());
}

TEST(CacheName, GivesTheDigestInHexadecimalDigitsAsAFileName) {
    const ContentHash::Digest digest = {0x00, 0x1f, 0xa0, 0xff, 4,  5,  6,  7,
                                        8,    9,    10,   11,   12, 13, 14, 15};
    EXPECT_EQ(EntryName(digest).fileName(), "001fa0ff0405060708090a0b0c0d0e0f.quavin-network");
    // No part at all is an empty input, whose hash is published.
    EXPECT_EQ(nameOf({}), "99aa06d3014798d86001c324468d497f.quavin-network");
}

TEST(CacheName, RecognisesItsFileNames) {
    const std::string name = nameOf({"network"});
    EXPECT_TRUE(EntryName::isFileName(name));
    EXPECT_FALSE(EntryName::isFileName(""));
    EXPECT_FALSE(EntryName::isFileName(".quavin-network"));
    EXPECT_FALSE(EntryName::isFileName(name + "x"));
    EXPECT_FALSE(EntryName::isFileName("0" + name));
    EXPECT_FALSE(EntryName::isFileName(name.substr(1)));
    EXPECT_FALSE(EntryName::isFileName("A" + name.substr(1)));
    EXPECT_FALSE(EntryName::isFileName("g" + name.substr(1)));
    EXPECT_FALSE(EntryName::isFileName(name.substr(0, 32) + ".quavin-netwerk"));
}

}  // namespace
}  // namespace VelmoraQuavin::internal
