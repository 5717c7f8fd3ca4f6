#include "engine/cache/content_hash.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/hex.h"

namespace VelmoraQuavin::internal {
namespace {

// The input that the algorithm's own program checks itself with.
std::vector<unsigned char> checkedInput(std::size_t size) {
    constexpr std::uint64_t kFactor = 11400714785074694797U;
    std::uint64_t state = 2654435761U;
    std::vector<unsigned char> bytes;
    for (std::size_t i = 0; i < size; ++i) {
        bytes.push_back(static_cast<unsigned char>(state >> 56));
        state *= kFactor;
    }
    return bytes;
}

struct Vector {
    std::size_t size;
    const char* digest;
};

// From xsum_sanity_check.c of xxHash 0.8, without a seed; the high half comes first.
const std::vector<Vector> kVectors = {
    {0, "99aa06d3014798d86001c324468d497f"},    {1, "a6cd5e9392000f6ac44bdff4074eecdb"},
    {6, "082afe0b8162d12a3e7039bdda43cfc6"},    {12, "6e3efd8fc7802b18061a192713f69ad9"},
    {24, "0ce966e4678d37611e7044d28b1b901d"},   {48, "a002ac4e5478227ef942219aed80f67b"},
    {81, "4952f58181ab00425e8bafb9f95fb803"},   {222, "337e09641b948717f1aebd597cec6b3a"},
    {403, "1b6de21e332dd73dcdeb804d65c6dea4"},  {512, "18d2d110dcc9bca1617e49599013cb6b"},
    {2048, "f736557fd47073a5dd59e2c3a5f038e0"}, {2240, "ccb134fbfa7ce49d6e73a90539cf2948"},
    {2367, "e89c0f6ff369b427cb37aeb9e5d361ed"},
};

TEST(ContentHash, ReturnsThePublishedValues) {
    for (const Vector& vector : kVectors) {
        const auto input = checkedInput(vector.size);
        ContentHash hash;
        hash.add(input.data(), input.size());
        EXPECT_EQ(testing::hexOf(hash.digest()), vector.digest) << vector.size;
    }
}

TEST(ContentHash, DoesNotDependOnHowTheBytesArrive) {
    for (const std::size_t step : {1U, 7U, 64U, 1000U}) {
        const auto input = checkedInput(2367);
        ContentHash hash;
        for (std::size_t done = 0; done < input.size(); done += step) {
            hash.add(input.data() + done, std::min(step, input.size() - done));
        }
        hash.add(nullptr, 0);
        EXPECT_EQ(testing::hexOf(hash.digest()), kVectors.back().digest) << step;
    }
}

TEST(ContentHash, GoesOnAfterADigestAndAMove) {
    const auto input = checkedInput(2367);
    ContentHash first;
    first.add(input.data(), 1000);
    EXPECT_NE(testing::hexOf(first.digest()), kVectors.back().digest);
    ContentHash hash = std::move(first);
    hash.add(input.data() + 1000, 1367);
    EXPECT_EQ(testing::hexOf(hash.digest()), kVectors.back().digest);
}

}  // namespace
}  // namespace VelmoraQuavin::internal
