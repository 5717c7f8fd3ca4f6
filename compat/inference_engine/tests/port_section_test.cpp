// The ports of a compiled network as bytes, which may be hostile when they are read.
#include "port_section.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "failure.hpp"

namespace InferenceEngine::runtime {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

const std::vector<LoadedPort>& somePorts() {
    static const std::vector<LoadedPort> ports{
        {"image", Direction::Input, 2, Precision::U8, {1, 3, 224, 224}},
        {"scores", Direction::Output, 0, Precision::FP32, {1, 1000}},
        {"shared", Direction::Input, 0, Precision::I32, {}},
        {"shared", Direction::Output, 1, Precision::I32, {}},
    };
    return ports;
}

std::vector<LoadedPort> portsIn(std::string_view bytes) {
    return takePortSection(bytes);
}

StatusCode statusOfReading(std::string_view bytes) {
    try {
        takePortSection(bytes);
        return StatusCode::OK;
    } catch (const Failure& failure) {
        return failure.status();
    }
}

/** Replaces the number that is this many bytes into the section. */
std::string with(std::string section, std::size_t place, std::uint64_t number) {
    std::memcpy(&section.at(place + 7) - 7, &number, sizeof number);
    return section;
}

/** A section with one port, whose numbers are where the constants say. */
std::string onePort() {
    return portSection({{"x", Direction::Input, 0, Precision::FP32, {1, 4}}});
}
constexpr std::size_t kVersion = 8;
constexpr std::size_t kCount = 16;
constexpr std::size_t kDirection = 24;
constexpr std::size_t kPrecision = 32;
constexpr std::size_t kNameSize = 48;
constexpr std::size_t kRank = 57;
constexpr std::size_t kFirstDim = 65;

TEST(PortSectionTest, IsReadAsItWasWritten) {
    const std::string bytes = portSection(somePorts()) + "blob";
    EXPECT_EQ((bytes.size() - 4) % 64, 0U);
    std::string_view rest = bytes;
    const std::vector<LoadedPort> ports = takePortSection(rest);
    EXPECT_EQ(rest, "blob");
    ASSERT_EQ(ports.size(), somePorts().size());
    for (std::size_t i = 0; i < ports.size(); ++i) {
        const LoadedPort& expected = somePorts()[i];
        EXPECT_EQ(ports[i].name, expected.name);
        EXPECT_EQ(ports[i].direction, expected.direction);
        EXPECT_EQ(ports[i].index, expected.index);
        EXPECT_TRUE(ports[i].precision == expected.precision);
        EXPECT_EQ(ports[i].dims, expected.dims);
    }
}

TEST(PortSectionTest, MayBeEmpty) {
    EXPECT_THAT(portsIn(portSection({})), IsEmpty());
}

TEST(PortSectionTest, IsRefusedWhereverItIsCut) {
    const std::string bytes = portSection(somePorts());
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        // A copy of just that size, so that a sanitizer sees any reading beyond it.
        const std::vector<char> cut(bytes.begin(), bytes.begin() + static_cast<long>(size));
        EXPECT_EQ(statusOfReading({cut.data(), cut.size()}), NETWORK_NOT_READ) << size;
    }
}

TEST(PortSectionTest, DamageIsRefusedOrReadWithoutHarm) {
    const std::string bytes = portSection(somePorts());
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        for (const int change : {0x01, 0x80, 0xFF}) {
            std::string damaged = bytes;
            damaged[place] = static_cast<char>(damaged[place] ^ change);
            const StatusCode status = statusOfReading(damaged);
            EXPECT_TRUE(status == StatusCode::OK || status == NETWORK_NOT_READ) << place;
        }
    }
}

TEST(PortSectionTest, SizesBeyondTheEndAreRefusedBeforeAnythingIsAllocated) {
    for (const std::size_t place : {kCount, kNameSize, kRank}) {
        for (const std::uint64_t size : {std::uint64_t{1} << 40, UINT64_MAX, UINT64_MAX - 7}) {
            EXPECT_EQ(statusOfReading(with(onePort(), place, size)), NETWORK_NOT_READ) << place;
        }
    }
}

TEST(PortSectionTest, AnotherVersionIsRefused) {
    EXPECT_THAT([] { portsIn(with(onePort(), kVersion, 2)); },
                ThrowsMessage<Failure>(HasSubstr("version")));
}

TEST(PortSectionTest, PortsThatCannotBeBoundAreRefused) {
    EXPECT_THAT([] { portsIn(with(onePort(), kDirection, 2)); },
                ThrowsMessage<Failure>(HasSubstr("direction")));
    for (const std::uint64_t precision :
         {std::uint64_t{Precision::BIN}, std::uint64_t{0}, std::uint64_t{256} + Precision::FP32}) {
        EXPECT_THAT([&] { portsIn(with(onePort(), kPrecision, precision)); },
                    ThrowsMessage<Failure>(HasSubstr("precision")));
    }
    EXPECT_THAT([] { portsIn(with(onePort(), kFirstDim, std::uint64_t{1} << 61)); },
                ThrowsMessage<Failure>(HasSubstr("elements")));
    EXPECT_THAT(portsIn(with(onePort(), kFirstDim, 7)).at(0).dims, ElementsAre(7, 4));
}

TEST(PortSectionTest, PortsOutOfOrderOrThereTwiceAreRefused) {
    const LoadedPort input{"x", Direction::Input, 0, Precision::FP32, {4}};
    const LoadedPort output{"x", Direction::Output, 0, Precision::FP32, {4}};
    EXPECT_EQ(portsIn(portSection({input, output})).size(), 2U);
    EXPECT_EQ(statusOfReading(portSection({output, input})), NETWORK_NOT_READ);
    EXPECT_EQ(statusOfReading(portSection({input, input})), NETWORK_NOT_READ);
}

}  // namespace
}  // namespace InferenceEngine::runtime
