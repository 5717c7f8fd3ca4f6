#include "platform/hkdf.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/hex.h"

namespace VelmoraQuavin::internal::platform {
namespace {

std::string derive(const std::string& secret, const std::string& salt, const std::string& info,
                   std::size_t size) {
    std::vector<unsigned char> key(size);
    EXPECT_TRUE(deriveHkdfSha256(reinterpret_cast<const unsigned char*>(secret.data()),
                                 secret.size(), salt, info, key.data(), key.size()));
    return testing::hexOf(key);
}

// The characters from one code to another.
std::string range(int first, int last) {
    std::string characters;
    for (int code = first; code <= last; ++code) {
        characters += static_cast<char>(code);
    }
    return characters;
}

// The examples from RFC 5869, appendix A.1 to A.3.
TEST(Hkdf, DerivesThePublishedKeys) {
    EXPECT_EQ(
        derive(std::string(22, '\x0b'), range(0, 0x0c), range(0xf0, 0xf9), 42),
        "3cb25f25faacd57a90434f64d0362f2a2d2d0a90cf1a5a4c5db02d56ecc4c5bf34007208d5b887185865");
    EXPECT_EQ(
        derive(range(0, 0x4f), range(0x60, 0xaf), range(0xb0, 0xff), 82),
        "b11e398dc80327a1c8e7f78c596a49344f012eda2d4efad8a050cc4c19afa97c59045a99cac7827271cb4"
        "1c65e590e09da3275600c2f09b8367793a9aca3db71cc30c58179ec3e87c14c01d5c1f3434f1d87");
}

TEST(Hkdf, WorksWithoutSaltAndInfo) {
    EXPECT_EQ(
        derive(std::string(22, '\x0b'), "", "", 42),
        "8da4e775a563c18f715f802a063c5a31b8a11f5c5ee1879ec3454e5f3c738d2d9d201395faa4b61a96c8");
}

TEST(Hkdf, RefusesMoreThanItCanDerive) {
    const std::string secret(16, 'k');
    std::vector<unsigned char> key(255 * 32 + 1);
    EXPECT_FALSE(deriveHkdfSha256(reinterpret_cast<const unsigned char*>(secret.data()),
                                  secret.size(), "salt", "info", key.data(), key.size()));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
