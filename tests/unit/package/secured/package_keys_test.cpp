#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "package/secured/package_keys_access.h"
#include "quavin/package_memory.h"
#include "support/secured_file.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::PackageKeysAccess;

CryptoKey keyOf(const Encryption& encryption) {
    CryptoKey key;
    std::memcpy(key.data(), encryption.getKey(), key.size());
    return key;
}

ModelComponent component(const String& kind, const String& path) {
    ModelComponent made;
    made.name = kind;
    made.path = path;
    return made;
}

// A target for each of two engines, with the components given.
ModelMetadata metadataWith(const std::vector<ModelComponent>& components) {
    ModelMetadata metadata;
    metadata.getTargets()[QuavinModelType::Openvino].components = components;
    metadata.getTargets()[QuavinModelType::CoreML].components = components;
    return metadata;
}

CryptoKey keyAt(ModelMetadata& metadata, std::size_t index,
                QuavinModelType type = QuavinModelType::Openvino) {
    return keyOf(metadata.getTargets().at(type).components.at(index).encryption);
}

TEST(PackageKeys, HaveNoKeysAtFirst) {
    const PackageKeys keys;
    EXPECT_EQ(PackageKeysAccess::archiveKey(keys), nullptr);
    ModelMetadata metadata = metadataWith({component("secured_file", "a")});
    metadata.getTargets()
        .at(QuavinModelType::Openvino)
        .components[0]
        .setCryptoKey(anotherKey().data());
    keys.applyTo(metadata);
    EXPECT_EQ(keyAt(metadata, 0), anotherKey());
}

TEST(PackageKeys, KeepTheKeyOfTheArchiveToThemselves) {
    PackageKeys keys;
    keys.setArchiveKey(countingKey().data());
    ASSERT_NE(PackageKeysAccess::archiveKey(keys), nullptr);
    EXPECT_EQ(keyOf(*PackageKeysAccess::archiveKey(keys)), countingKey());
    ModelMetadata metadata = metadataWith({component("secured_file", "a")});
    keys.applyTo(metadata);
    EXPECT_EQ(keyAt(metadata, 0), CryptoKey{});
}

TEST(PackageKeys, SetOneKeyOnTheSecuredComponentsOfAllTargets) {
    PackageKeys keys;
    keys.setComponentKey(countingKey().data());
    ModelMetadata metadata =
        metadataWith({component("secured_file", "a"), component("file", "b"),
                      component("secured_tar", "c"), component("memory_stream", "d")});
    keys.applyTo(metadata);
    for (const auto type : {QuavinModelType::Openvino, QuavinModelType::CoreML}) {
        EXPECT_EQ(keyAt(metadata, 0, type), countingKey());
        EXPECT_EQ(keyAt(metadata, 1, type), CryptoKey{});
        EXPECT_EQ(keyAt(metadata, 2, type), countingKey());
        EXPECT_EQ(keyAt(metadata, 3, type), CryptoKey{});
    }
}

TEST(PackageKeys, PreferTheKeyOfAComponentsOwn) {
    PackageKeys keys;
    keys.setComponentKey("folder/a", anotherKey().data());
    keys.setComponentKey(countingKey().data());
    ModelMetadata metadata = metadataWith(
        {component("secured_file", "folder\\a"), component("secured_file", "./folder/a"),
         component("secured_file", "a"), component("file", "folder/a")});
    keys.applyTo(metadata);
    EXPECT_EQ(keyAt(metadata, 0), anotherKey());
    EXPECT_EQ(keyAt(metadata, 1), anotherKey());
    EXPECT_EQ(keyAt(metadata, 2), countingKey());
    EXPECT_EQ(keyAt(metadata, 3), CryptoKey{});
}

TEST(PackageKeys, ReplaceEarlierKeys) {
    PackageKeys keys;
    keys.setArchiveKey(countingKey().data());
    keys.setArchiveKey(anotherKey().data());
    keys.setComponentKey("a", countingKey().data());
    keys.setComponentKey(".\\a", anotherKey().data());
    EXPECT_EQ(keyOf(*PackageKeysAccess::archiveKey(keys)), anotherKey());
    ModelMetadata metadata = metadataWith({component("secured_file", "a")});
    keys.applyTo(metadata);
    EXPECT_EQ(keyAt(metadata, 0), anotherKey());
}

TEST(PackageKeys, RefuseNullPointersAndStayAsTheyWere) {
    PackageKeys keys;
    const std::string text = "A crypto key must not be null";
    expectThrows<InvalidArgumentsException>([&] { keys.setArchiveKey(nullptr); }, INVALID_ARGUMENTS,
                                            text);
    expectThrows<InvalidArgumentsException>([&] { keys.setComponentKey(nullptr); },
                                            INVALID_ARGUMENTS, text);
    expectThrows<InvalidArgumentsException>([&] { keys.setComponentKey("a", nullptr); },
                                            INVALID_ARGUMENTS, text);
    EXPECT_EQ(PackageKeysAccess::archiveKey(keys), nullptr);
}

TEST(PackageKeys, AreCopiedWithAllTheirKeys) {
    PackageKeys keys;
    keys.setArchiveKey(countingKey().data());
    keys.setComponentKey("a", anotherKey().data());
    const PackageKeys copy = keys;
    PackageKeys assigned;
    assigned = copy;
    EXPECT_EQ(keyOf(*PackageKeysAccess::archiveKey(assigned)), countingKey());
    EXPECT_EQ(keyOf(*PackageKeysAccess::archiveKey(keys)), countingKey());
    ModelMetadata metadata = metadataWith({component("secured_file", "a")});
    assigned.applyTo(metadata);
    EXPECT_EQ(keyAt(metadata, 0), anotherKey());
}

TEST(PackageKeys, AreGoneFromWhereTheyAreMovedFrom) {
    PackageKeys keys;
    keys.setArchiveKey(countingKey().data());
    keys.setComponentKey(countingKey().data());
    keys.setComponentKey("a", anotherKey().data());
    PackageKeys moved = std::move(keys);
    PackageKeys assigned;
    assigned = std::move(moved);
    EXPECT_EQ(keyOf(*PackageKeysAccess::archiveKey(assigned)), countingKey());
    ModelMetadata metadata =
        metadataWith({component("secured_file", "a"), component("secured_file", "b")});
    for (const PackageKeys* emptied : {&keys, &moved}) {  // NOLINT(bugprone-use-after-move)
        EXPECT_EQ(PackageKeysAccess::archiveKey(*emptied), nullptr);
        emptied->applyTo(metadata);
        EXPECT_EQ(keyAt(metadata, 0), CryptoKey{});
        EXPECT_EQ(keyAt(metadata, 1), CryptoKey{});
    }
    assigned.applyTo(metadata);
    EXPECT_EQ(keyAt(metadata, 0), anotherKey());
    EXPECT_EQ(keyAt(metadata, 1), countingKey());
}

// The parts of an object's own memory that held keys; those of paths are in a vector.
TEST(PackageKeys, LeaveNoKeyInTheirMemory) {
    alignas(PackageKeys) std::array<unsigned char, sizeof(PackageKeys)> memory{};
    const auto holdsKey = [&memory] {
        const CryptoKey key = countingKey();
        return std::search(memory.begin(), memory.end(), key.begin(), key.end()) != memory.end();
    };
    auto* const keys = new (memory.data()) PackageKeys;
    keys->setArchiveKey(countingKey().data());
    keys->setComponentKey(countingKey().data());
    ASSERT_TRUE(holdsKey());
    PackageKeys moved = std::move(*keys);
    EXPECT_FALSE(holdsKey());
    *keys = moved;
    ASSERT_TRUE(holdsKey());
    keys->~PackageKeys();
    EXPECT_FALSE(holdsKey());
}

}  // namespace
}  // namespace VelmoraQuavin::testing
