// The private keys of tests/data/signature/private, which private_keys.py there describes.

#include "platform/ecdsa_signing.h"

#include <gtest/gtest.h>

#include "package/signature/ecdsa_signature.h"
#include "package/signature/public_key.h"
#include "support/signature_data.h"
#include "support/system.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using testing::readSignatureData;

// The public half of RFC 6979's key on P-256, appendix A.2.5.
constexpr std::string_view kP256 =
    "\x60\xFE\xD4\xBA\x25\x5A\x9D\x31\xC9\x61\xEB\x74\xC6\x35\x6D\x68"
    "\xC0\x49\xB8\x92\x3B\x61\xFA\x6C\xE6\x69\x62\x2E\x60\xF2\x9F\xB6"
    "\x79\x03\xFE\x10\x08\xB8\xBC\x99\xA4\x1A\xE9\xE9\x56\x28\xBC\x64"
    "\xF2\xF1\xB2\x0C\x2D\x7E\x9F\x51\x77\xA3\xC2\x94\xD4\x46\x22\x99";

std::string privatePem(const std::string& name) {
    return readSignatureData("private/" + name + ".pem");
}

class EcdsaSigning : public ::testing::Test {
protected:
    PrivateKeyReading read(const std::string& name,
                           std::optional<std::string_view> passphrase = std::nullopt) {
        problem_.clear();
        return key_.read(privatePem(name), passphrase, problem_);
    }
    void expectRefused(std::string_view pem, const std::string& problem) {
        problem_.clear();
        EXPECT_EQ(key_.read(pem, std::nullopt, problem_), PrivateKeyReading::kRefused);
        EXPECT_EQ(problem_, problem);
    }
    void expectEachSigns(const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            SCOPED_TRACE(name);
            ASSERT_EQ(read(name), PrivateKeyReading::kDone) << problem_;
            expectItSigns();
        }
    }
    // Signs, and verifies with the public half.
    void expectItSigns() {
        const auto half = readPublicKeyInfo(key_.publicInfo(), problem_);
        ASSERT_TRUE(half.has_value()) << problem_;
        const std::vector<unsigned char> digest(digestSize(hashFor(half->key.curve)), 0x5A);
        // Often enough to see numbers with and without a leading bit.
        for (int i = 0; i < 20; ++i) {
            const std::string der = key_.sign(digest.data(), digest.size());
            const auto signature = readEcdsaSignature(der, half->key.curve);
            ASSERT_TRUE(signature.has_value());
            EXPECT_TRUE(verifyEcdsa(half->key, digest.data(), *signature));
        }
    }

    EcPrivateKey key_;
    std::string problem_;
};

TEST_F(EcdsaSigning, SignsWithKeysInEveryPlainForm) {
    expectEachSigns({"p256", "p256_pkcs8", "after_parameters"});
}

TEST_F(EcdsaSigning, SignsWithKeysOnTheOtherCurve) {
    if (testing::runsUnderWine()) {
        GTEST_SKIP() << "wine cannot import private keys on P-384";
    }
    expectEachSigns({"p384", "p384_pkcs8"});
}

TEST_F(EcdsaSigning, GivesThePublicHalf) {
    for (const char* const name : {"p256", "p256_pkcs8"}) {
        ASSERT_EQ(read(name), PrivateKeyReading::kDone) << problem_;
        EXPECT_EQ(key_.publicInfo(), std::string(infoStart(EcCurve::kP256)) + std::string(kP256));
    }
}

TEST_F(EcdsaSigning, RefusesWhatIsNoPrivateKey) {
    const std::string whole = privatePem("p256");
    for (const std::string& pem :
         {std::string(), std::string("no key"), whole.substr(0, 100), testing::readPem("p256")}) {
        expectRefused(pem, "it holds no private key in PEM");
    }
}

TEST_F(EcdsaSigning, AKeyThatWasReadBeforeStaysAfterARefusal) {
    ASSERT_EQ(read("p256"), PrivateKeyReading::kDone);
    expectRefused("no key", "it holds no private key in PEM");
    expectItSigns();
}

TEST_F(EcdsaSigning, OtherKindsOfKeyCannotSign) {
    for (const char* const name : {"k256", "ed25519"}) {
        SCOPED_TRACE(name);
        const bool accepted = read(name) == PrivateKeyReading::kDone &&
                              readPublicKeyInfo(key_.publicInfo(), problem_).has_value();
        EXPECT_FALSE(accepted);
        EXPECT_NE(problem_.find("on the curve P-256 or P-384"), std::string::npos) << problem_;
    }
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
