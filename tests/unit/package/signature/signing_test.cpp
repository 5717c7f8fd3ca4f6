#include "package/signature/signing.h"

#include <gmock/gmock.h>

#include "package/signature/verify_signature.h"
#include "support/status_matcher.h"
#include "support/system.h"
#include "unit/package/signature/signature_fixture.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::SignedFiles;
using internal::TrustedKey;
using internal::platform::Sha256Digest;

class Signing : public ::testing::Test {
protected:
    Signing() { use("p256"); }

    void use(const std::string& name) {
        std::string problem;
        ASSERT_EQ(key_.read(readSignatureData("private/" + name + ".pem"), std::nullopt, problem),
                  internal::platform::PrivateKeyReading::kDone);
        const auto half = internal::readPublicKeyInfo(key_.publicInfo(), problem);
        ASSERT_TRUE(half.has_value()) << problem;
        publicKey_ = *half;
    }
    void expectVerified() {
        const SignedFiles files = {
            {"manifest.json", digestOf(1)}, {"a/größe", digestOf(2)}, {"a b\"c\n", digestOf(0)}};
        const std::string bundle = internal::signFiles(files, key_, publicKey_);
        EXPECT_EQ(internal::verifySignature(bundle, {publicKey_}), files);
        EXPECT_THAT(bundle, ::testing::HasSubstr('"' + publicKey_.hint + '"'));
        expectThrows<SignatureException>(
            [&] { internal::verifySignature(bundle, {readKey("p256")}); }, SIGNATURE_ERROR,
            "model.sig is not signed by a trusted key");
    }
    void expectRefused(const SignedFiles& files, const std::string& text) {
        expectThrows<InvalidArgumentsException>(
            [&] { internal::signFiles(files, key_, publicKey_); }, INVALID_ARGUMENTS, text);
    }

    internal::platform::EcPrivateKey key_;
    TrustedKey publicKey_;
};

TEST_F(Signing, MakesWhatIsVerified) {
    expectVerified();
}

TEST_F(Signing, MakesWhatIsVerifiedOnTheOtherCurve) {
    if (runsUnderWine()) {
        GTEST_SKIP() << "wine cannot import private keys on P-384";
    }
    use("p384");
    expectVerified();
}

TEST_F(Signing, RefusesNamesThatAreNotPlain) {
    for (const char* const name :
         {"", "/a", "a//b", "../a", "a/..", "a\\b", "./a", "C:/a", "a:b", "\xFF"}) {
        expectRefused({{name, digestOf(1)}},
                      '"' + std::string(name) +
                          "\" cannot be signed: not every system can have a file of this name");
    }
}

TEST_F(Signing, RefusesNamesThatDifferOnlyInCase) {
    expectRefused({{"a/B", digestOf(1)}, {"a/b", digestOf(2)}},
                  "\"a/B\" and \"a/b\" cannot be signed together: their names differ only in case, "
                  "which some systems ignore");
}

TEST_F(Signing, AKeyThatDoesNotBelongToItsPublicHalfMakesNothing) {
    publicKey_ = readKey("p256");
    expectRefused({{"a", digestOf(1)}},
                  "The package cannot be signed: the private key does not seem to belong to its "
                  "public half");
}

}  // namespace
}  // namespace VelmoraQuavin::testing
