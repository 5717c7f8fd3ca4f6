#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/cache/compiled_cache.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal {

/// The size of an entry before its content.
inline constexpr std::size_t kHeaderSize = 64;

inline EntryName entryNamed(std::string_view text) {
    CacheName name;
    name.add(text);
    return name.entry();
}

inline EntryBuffer bufferWith(std::string_view content) {
    EntryBuffer buffer(EntryBuffer::Content::kPlain, content.size());
    buffer.append(content.data(), content.size());
    return buffer;
}

inline std::unique_ptr<CacheSeal> secretSealWith(unsigned char keyByte) {
    std::array<unsigned char, 16> bytes{};
    bytes.fill(keyByte);
    Encryption key;
    key.setKey(bytes.data());
    return makeSecretSeal({&key});
}

/// The kinds of seals that this system has.
inline std::vector<SealKind> sealKinds() {
    std::vector<SealKind> kinds = {SealKind::kChecksum};
    if (canSealSecrets()) {
        kinds.push_back(SealKind::kSecret);
    }
    return kinds;
}

/// A cache in the test's own directory.
class CacheFixture : public ::testing::Test {
protected:
    /// The content of an entry; nothing if there is none.
    std::optional<std::string> find(const EntryName& name, const CacheSeal& seal) {
        const std::optional<EntryBuffer> found = cache_.find(name, seal, problem_);
        if (!found.has_value()) {
            return std::nullopt;
        }
        EXPECT_EQ(problem_, "");
        return std::string(reinterpret_cast<const char*>(found->content()), found->size());
    }
    std::string store(const EntryName& name, const CacheSeal& seal, std::string_view content) {
        return cache_.store(name, seal, bufferWith(content));
    }

    testing::TempDirectory directory_;
    CompiledCache cache_{directory_.text(), 0};
    std::string problem_ = "never set";
    std::unique_ptr<CacheSeal> checksum_ = makeChecksumSeal();
};

}  // namespace VelmoraQuavin::internal
