#include "quavin/encryption.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

#include "quavin/metadata.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using Key = std::array<unsigned char, 16>;

constexpr Key kKey = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
constexpr Key kOtherKey = {0xF0, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7,
                           0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF};
constexpr Key kZeros = {};

Key keyOf(const Encryption& encryption) {
    Key key;
    std::memcpy(key.data(), encryption.getKey(), key.size());
    return key;
}

// Whether the sixteen bytes of kKey occur anywhere in the memory.
template <std::size_t size>
bool holdsKey(const std::array<unsigned char, size>& memory) {
    for (std::size_t start = 0; start + kKey.size() <= size; ++start) {
        if (std::memcmp(memory.data() + start, kKey.data(), kKey.size()) == 0) {
            return true;
        }
    }
    return false;
}

TEST(PaddingType, HasFixedNumbers) {
    EXPECT_EQ(static_cast<std::uint32_t>(PaddingType::NONE), 0u);
    EXPECT_EQ(static_cast<std::uint32_t>(PaddingType::PKCS7), 1u);
}

TEST(Encryption, HasAKeyOfZerosAndNoPaddingByDefault) {
    const Encryption encryption;
    EXPECT_EQ(keyOf(encryption), kZeros);
    EXPECT_EQ(encryption.getPaddingType(), PaddingType::NONE);
}

TEST(Encryption, KeepsKeyAndPadding) {
    const Encryption encryption(Key(kKey), PaddingType::PKCS7);
    EXPECT_EQ(keyOf(encryption), kKey);
    EXPECT_EQ(encryption.getPaddingType(), PaddingType::PKCS7);
}

TEST(Encryption, ZeroesTheArrayItIsConstructedFrom) {
    Key key = kKey;
    // NOLINTNEXTLINE(performance-move-const-arg): what it binds to is zeroed
    const Encryption encryption(std::move(key), PaddingType::NONE);
    EXPECT_EQ(key, kZeros);  // NOLINT(bugprone-use-after-move): the point of this test
    EXPECT_EQ(keyOf(encryption), kKey);
}

TEST(Encryption, SetKeyCopiesSixteenBytes) {
    std::array<unsigned char, 17> source{};
    std::memcpy(source.data(), kKey.data(), kKey.size());
    source[16] = 0xEE;
    Encryption encryption;
    encryption.setPaddingType(PaddingType::PKCS7);
    encryption.setKey(source.data());
    source.fill(0);
    EXPECT_EQ(keyOf(encryption), kKey);
    EXPECT_EQ(encryption.getPaddingType(), PaddingType::PKCS7);
}

TEST(Encryption, SetKeyAcceptsTheObjectsOwnKey) {
    Encryption encryption(Key(kKey), PaddingType::NONE);
    encryption.setKey(encryption.getKey());
    EXPECT_EQ(keyOf(encryption), kKey);
}

TEST(Encryption, SetKeyRefusesNullAndKeepsTheKey) {
    Encryption encryption(Key(kKey), PaddingType::NONE);
    testing::expectThrows<InvalidArgumentsException>(
        [&] { encryption.setKey(nullptr); }, INVALID_ARGUMENTS, "A crypto key must not be null");
    EXPECT_EQ(keyOf(encryption), kKey);
}

TEST(Encryption, SetPaddingTypeLeavesTheKey) {
    Encryption encryption(Key(kKey), PaddingType::NONE);
    encryption.setPaddingType(PaddingType::PKCS7);
    EXPECT_EQ(encryption.getPaddingType(), PaddingType::PKCS7);
    EXPECT_EQ(keyOf(encryption), kKey);
}

TEST(Encryption, CopiesAreIndependent) {
    Encryption original(Key(kKey), PaddingType::PKCS7);
    const Encryption copy = original;
    Encryption assigned;
    assigned = original;
    original.setKey(kOtherKey.data());
    EXPECT_EQ(keyOf(original), kOtherKey);
    for (const Encryption& other : {copy, assigned}) {
        EXPECT_EQ(keyOf(other), kKey);
        EXPECT_EQ(other.getPaddingType(), PaddingType::PKCS7);
    }
}

TEST(Encryption, OverwritesItsKeyWhenDestroyed) {
    alignas(Encryption) std::array<unsigned char, sizeof(Encryption)> memory{};
    auto* encryption = new (memory.data()) Encryption(Key(kKey), PaddingType::NONE);
    ASSERT_TRUE(holdsKey(memory));
    encryption->~Encryption();
    EXPECT_FALSE(holdsKey(memory));
}

TEST(Encryption, OverwritesItsKeyWhenAssigned) {
    alignas(Encryption) std::array<unsigned char, sizeof(Encryption)> memory{};
    auto* encryption = new (memory.data()) Encryption(Key(kKey), PaddingType::NONE);
    *encryption = Encryption(Key(kOtherKey), PaddingType::NONE);
    EXPECT_FALSE(holdsKey(memory));
    EXPECT_EQ(keyOf(*encryption), kOtherKey);
    encryption->~Encryption();
}

TEST(ModelComponent, SetCryptoKeyCopiesSixteenBytesIntoItsEncryption) {
    ModelComponent component;
    Key key = kKey;
    component.setCryptoKey(key.data());
    key.fill(0);
    EXPECT_EQ(keyOf(component.encryption), kKey);
    EXPECT_EQ(component.encryption.getPaddingType(), PaddingType::NONE);
}

TEST(ModelComponent, SetCryptoKeyRefusesNullAndKeepsTheKey) {
    ModelComponent component;
    component.setCryptoKey(kKey.data());
    testing::expectThrows<InvalidArgumentsException>([&] { component.setCryptoKey(nullptr); },
                                                     INVALID_ARGUMENTS,
                                                     "A crypto key must not be null");
    EXPECT_EQ(keyOf(component.encryption), kKey);
}

TEST(ModelComponent, OverwritesItsKeyWhenDestroyed) {
    alignas(ModelComponent) std::array<unsigned char, sizeof(ModelComponent)> memory{};
    auto* component = new (memory.data()) ModelComponent;
    component->setCryptoKey(kKey.data());
    ASSERT_TRUE(holdsKey(memory));
    component->~ModelComponent();
    EXPECT_FALSE(holdsKey(memory));
}

}  // namespace
}  // namespace VelmoraQuavin
