#include "package/signature/trusted_keys.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "support/status_matcher.h"
#include "unit/package/signature/signature_fixture.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::areKeysTrusted;
using internal::readTrustedKeys;
using internal::requireUsable;
using internal::setTrustedKeys;
using internal::SharedTrustedKeys;
using internal::trustedKeys;
using ::testing::IsEmpty;
using ::testing::IsNull;
using ::testing::NotNull;
using ::testing::SizeIs;

TEST(TrustedKeys, ThereAreNoneByDefault) {
    EXPECT_FALSE(areKeysTrusted());
    EXPECT_THAT(trustedKeys(), IsNull());
    EXPECT_THAT(readTrustedKeys({}), IsNull());
}

TEST(TrustedKeys, AreReadInTheirOrder) {
    const TrustInKeys trust({readPem("p384"), readPem("p256")});
    EXPECT_TRUE(areKeysTrusted());
    const SharedTrustedKeys trusted = trustedKeys();
    ASSERT_THAT(trusted, NotNull());
    ASSERT_THAT(trusted->keys, SizeIs(2));
    EXPECT_EQ(trusted->keys[0].hint, readKey("p384").hint);
    EXPECT_EQ(trusted->keys[1].hint, readKey("p256").hint);
    EXPECT_THAT(trusted->problem, IsEmpty());
    requireUsable(*trusted);
}

TEST(TrustedKeys, AreReplacedNotAddedTo) {
    const TrustInKeys trust;
    setTrustedKeys(readTrustedKeys({readPem("other")}));
    ASSERT_THAT(trustedKeys()->keys, SizeIs(1));
    EXPECT_EQ(trustedKeys()->keys[0].hint, readKey("other").hint);
    setTrustedKeys(nullptr);
    EXPECT_FALSE(areKeysTrusted());
}

TEST(TrustedKeys, StayAsTheyAreForWhoHoldsThem) {
    const TrustInKeys trust;
    const SharedTrustedKeys held = trustedKeys();
    setTrustedKeys(nullptr);
    EXPECT_EQ(held->keys.at(0).hint, readKey("p256").hint);
}

TEST(TrustedKeys, MayBeReplacedWhileAnotherThreadReadsThem) {
    const TrustInKeys trust;
    std::atomic<bool> done{false};
    std::size_t read = 0;
    std::thread reader([&] {
        do {
            read += trustedKeys()->keys.size();
        } while (!done);
    });
    const std::vector<String> pems = {readPem("other")};
    for (int i = 0; i < 20; ++i) {
        setTrustedKeys(readTrustedKeys(pems));
    }
    done = true;
    reader.join();
    EXPECT_GE(read, 1U);
}

TEST(TrustedKeys, AKeyThatCannotBeUsedIsNamedByItsNumber) {
    const TrustInKeys trust({readPem("p256"), readPem("rsa"), readPem("other")});
    expectThrows<InvalidArgumentsException>(
        [] { requireUsable(*trustedKeys()); }, INVALID_ARGUMENTS,
        "Trusted key 2: it is not an uncompressed key on the curve P-256 or P-384");
}

TEST(TrustedKeys, AnEmptyTextIsAKeyThatCannotBeUsedAndNotNone) {
    const TrustInKeys trust({""});
    EXPECT_TRUE(areKeysTrusted());
    expectThrows<InvalidArgumentsException>(
        [] { requireUsable(*trustedKeys()); }, INVALID_ARGUMENTS,
        "Trusted key 1: it is not one block of PEM with a public key");
}

}  // namespace
}  // namespace VelmoraQuavin::testing
