// Signatures made by openssl, right and wrong; tests/data/signature says what openssl and
// model-signing make of them.

#include "package/signature/verify_signature.h"

#include <gmock/gmock.h>

#include "support/status_matcher.h"
#include "unit/package/signature/signature_fixture.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::SignedFiles;
using internal::verifySignature;
using internal::verifyStatement;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;
using ::testing::SizeIs;

struct BundleCase {
    std::string name, key, openssl, modelSigning, problem;
};

std::vector<BundleCase> bundleCases() {
    std::vector<BundleCase> cases;
    for (const auto& row : readTable("bundles.tsv", 5)) {
        cases.push_back({row[0], row[1], row[2], row[3], row[4]});
    }
    return cases;
}

// The key that the table names for a bundle.
internal::TrustedKey keyOf(const std::string& bundle) {
    for (const BundleCase& one : bundleCases()) {
        if (one.name == bundle) {
            return readKey(one.key);
        }
    }
    throw std::runtime_error("there is no bundle " + bundle);
}

// The text of the refusal; empty if the bundle is accepted.
std::string problemOf(const std::string& bundle, const std::vector<internal::TrustedKey>& keys) {
    try {
        verifySignature(bundle, keys);
        return "";
    } catch (const SignatureException& exception) {
        return exception.what();
    }
}

TEST(VerifySignature, EachBundleOfTheTableIsAcceptedOrRefusedWithItsReason) {
    const auto cases = bundleCases();
    EXPECT_THAT(cases, SizeIs(::testing::Gt(100U)));
    for (const BundleCase& bundle : cases) {
        EXPECT_EQ(problemOf(readBundle(bundle.name), {readKey(bundle.key)}), bundle.problem)
            << bundle.name;
    }
}

TEST(VerifySignature, AcceptsNothingThatOpensslOrModelSigningRefuses) {
    for (const BundleCase& bundle : bundleCases()) {
        if (bundle.problem.empty()) {
            EXPECT_EQ(bundle.openssl, "right") << bundle.name;
            EXPECT_EQ(bundle.modelSigning, "accepts") << bundle.name;
        }
    }
}

TEST(VerifySignature, GivesTheFilesAndTheirDigests) {
    EXPECT_EQ(verifySignature(readBundle("right"), {readKey("p256")}),
              (SignedFiles{{"manifest.json", digestOf(0x11)},
                           {"net.bin", digestOf(0x22)},
                           {"sub/net.xml", digestOf(0x33)}}));
    EXPECT_EQ(verifySignature(readBundle("no_resources"), {readKey("p256")}), SignedFiles());
    EXPECT_THAT(verifySignature(readBundle("unusual_names"), {keyOf("unusual_names")}),
                Contains(Key("caf\u00E9")));
}

TEST(VerifySignature, GivesThePathsThatWereLeftOutOfThePackage) {
    const auto statement =
        verifyStatement(readBundle("ignored_paths"), {keyOf("ignored_paths")}).statement;
    EXPECT_THAT(statement.ignoredPaths, ElementsAre("model.sig", ".git", "a/b"));
    EXPECT_THAT(verifyStatement(readBundle("no_ignored_paths"), {keyOf("no_ignored_paths")})
                    .statement.ignoredPaths,
                IsEmpty());
    for (const char* const name : {"model.sig", ".git", ".git/config", "a/b", "a/b/c"}) {
        EXPECT_TRUE(statement.leavesOut(name)) << name;
    }
    for (const char* const name : {"net.bin", ".gitignore", "a", "a/bc", "x/.git", "A/B"}) {
        EXPECT_FALSE(statement.leavesOut(name)) << name;
    }
}

TEST(VerifySignature, WhatIsListedIsNotLeftOut) {
    const internal::Statement statement{{{"a/b", digestOf(1)}}, {"a"}};
    EXPECT_FALSE(statement.leavesOut("a/b"));
    EXPECT_TRUE(statement.leavesOut("a/c"));
}

TEST(VerifySignature, SaysWhichKeySigned) {
    const std::vector<internal::TrustedKey> keys = {readKey("other"), readKey("p384"),
                                                    readKey("p256")};
    EXPECT_EQ(verifyStatement(readBundle("other_key"), keys).signer, 0U);
    EXPECT_EQ(verifyStatement(readBundle("right_p384"), keys).signer, 1U);
    EXPECT_EQ(verifyStatement(readBundle("right"), keys).signer, 2U);
}

TEST(VerifySignature, EachOfSeveralKeysCounts) {
    const std::vector<internal::TrustedKey> keys = {readKey("other"), readKey("p384"),
                                                    readKey("p256")};
    for (const char* const name :
         {"right", "right_p384", "no_hint", "other_key", "other_key_without_hint", "other_curve"}) {
        EXPECT_EQ(problemOf(readBundle(name), keys), "") << name;
    }
}

TEST(VerifySignature, AHintAtAnotherKeyExcludesTheOnesItDoesNotName) {
    EXPECT_EQ(problemOf(readBundle("other_hint"), {readKey("other"), readKey("p256")}),
              "model.sig is not signed by a trusted key");
}

TEST(VerifySignature, TrustsNoneWithoutKeys) {
    EXPECT_EQ(problemOf(readBundle("right"), {}), "model.sig is not signed by a trusted key");
}

TEST(VerifySignature, AcceptsSixteenMebibytesAndNoMore) {
    const std::string right = readBundle("right");
    const std::string blanks((std::size_t{1} << 24U) - right.size(), ' ');
    EXPECT_EQ(problemOf(right + blanks, {readKey("p256")}), "");
    EXPECT_EQ(problemOf(right + blanks + ' ', {readKey("p256")}),
              "model.sig is not the signature of a model: it has more than 16777216 bytes");
}

TEST(VerifySignature, RefusesMoreThanAMillionValues) {
    const std::string values = "[" + std::string(std::size_t{1} << 21U, ',') + "]";
    EXPECT_EQ(problemOf(values, {readKey("p256")}),
              "model.sig is not the signature of a model: it has too many values");
}

TEST(VerifySignature, RefusesInnermostValuesOfDeepNestingThatNameAMemberTwice) {
    std::string nested;
    for (int depth = 0; depth < 100000; ++depth) {
        nested += '[';
    }
    nested += R"({"a": 1, "a": 2})" + std::string(nested.size(), ']');
    EXPECT_EQ(problemOf(R"({"nested": )" + nested + "}", {readKey("p256")}),
              "model.sig is not the signature of a model: an object has two members of one name");
}

}  // namespace
}  // namespace VelmoraQuavin::testing
