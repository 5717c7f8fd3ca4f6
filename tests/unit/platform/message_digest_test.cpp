#include "platform/message_digest.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/hex.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// The examples of FIPS 180-4.
const std::string kAbcSha256 = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
const std::string kAbcSha384 =
    "cb00753f45a35e8bb5a03d699ac65007272c32ab0eded1631a8b605a43ff5bed"
    "8086072ba1e7cc2358baeca134c825a7";
const std::string kMillionSha256 =
    "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0";

std::string finished(MessageDigest& digest, HashAlgorithm algorithm) {
    std::vector<unsigned char> bytes(digestSize(algorithm));
    EXPECT_TRUE(digest.finish(bytes.data()));
    return testing::hexOf(bytes);
}

std::string digestOf(HashAlgorithm algorithm, const std::string& text) {
    MessageDigest digest(algorithm);
    digest.add(text.data(), text.size());
    return finished(digest, algorithm);
}

TEST(MessageDigestTest, GivesThePublishedDigests) {
    EXPECT_EQ(digestOf(HashAlgorithm::kSha256, "abc"), kAbcSha256);
    EXPECT_EQ(digestOf(HashAlgorithm::kSha384, "abc"), kAbcSha384);
    EXPECT_EQ(digestOf(HashAlgorithm::kSha256, std::string(1000000, 'a')), kMillionSha256);
}

TEST(MessageDigestTest, GivesTheDigestOfNothing) {
    const char* const expected = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
    MessageDigest digest(HashAlgorithm::kSha256);
    EXPECT_EQ(finished(digest, HashAlgorithm::kSha256), expected);
    MessageDigest null(HashAlgorithm::kSha256);
    null.add(nullptr, 0);
    EXPECT_EQ(finished(null, HashAlgorithm::kSha256), expected);
}

TEST(MessageDigestTest, PartsMakeTheSameDigestAsTheWhole) {
    MessageDigest digest(HashAlgorithm::kSha256);
    for (const char* const part : {"a", "b", "c"}) {
        digest.add(part, 1);
    }
    EXPECT_EQ(finished(digest, HashAlgorithm::kSha256), kAbcSha256);
}

TEST(MessageDigestTest, MovesWithWhatWasAdded) {
    MessageDigest first(HashAlgorithm::kSha256);
    first.add("ab", 2);
    MessageDigest second(std::move(first));
    second.add("c", 1);
    EXPECT_EQ(finished(second, HashAlgorithm::kSha256), kAbcSha256);
}

TEST(MessageDigestTest, HashesAWholeAtOnce) {
    Sha256Digest digest{};
    ASSERT_TRUE(sha256("abc", 3, digest));
    EXPECT_EQ(testing::hexOf(digest), kAbcSha256);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
