// Allocations that the system's cryptography makes for signatures fail.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "package/signature/bundle.h"
#include "package/signature/signing.h"
#include "package/signature/verify_signature.h"
#include "quavin/status.h"
#include "support/signature_data.h"
#include "unit/platform/aes_memory.h"

namespace VelmoraQuavin::internal {
namespace {

using platform::HashAlgorithm;

// More than any digest makes. Computing with points makes thousands.
constexpr int kMostAllocations = 30;

// Runs something with one more allocation granted each time until it succeeds or the limit is
// reached, and gives the texts of the runs before that.
std::vector<std::string> failuresOf(const std::function<void()>& run) {
    std::vector<std::string> texts;
    for (int granted = 0; granted < kMostAllocations; ++granted) {
        testing::grantAesAllocations(granted);
        try {
            run();
            testing::grantAllAesAllocations();
            return texts;
        } catch (const Exception& failure) {
            testing::grantAllAesAllocations();
            texts.emplace_back(failure.what());
        }
        EXPECT_TRUE(testing::hostSeesNoAesError());
    }
    return texts;
}

class SignatureWithoutMemory : public ::testing::Test {
protected:
    SignatureWithoutMemory() {
        EXPECT_TRUE(testing::canFailAesAllocations());
        std::string problem;
        publicKey_ = readPublicKey(testing::readPem("p256"), problem).value();
        bundle_ = testing::readBundle("right");
        // One-time setup must not count as a failure of a call.
        static_cast<void>(verifySignature(bundle_, {publicKey_}));
    }

    void expectOnly(const std::vector<std::string>& texts, const std::string& expected) {
        EXPECT_FALSE(texts.empty());
        EXPECT_LT(texts.size(), kMostAllocations);
        for (const std::string& text : texts) {
            EXPECT_EQ(text, expected);
        }
    }

    TrustedKey publicKey_;
    std::string bundle_;
};

TEST_F(SignatureWithoutMemory, HasNoDigestOfItsPayload) {
    const std::vector<unsigned char> right = payloadDigest("payload", HashAlgorithm::kSha256);
    EXPECT_EQ(right.size(), platform::kSha256Size);
    const auto failures = failuresOf([&right] {
        const std::vector<unsigned char> digest = payloadDigest("payload", HashAlgorithm::kSha256);
        if (digest.empty()) {
            throw Exception("none");
        }
        EXPECT_EQ(digest, right);
    });
    expectOnly(failures, "none");
}

TEST_F(SignatureWithoutMemory, IsRefusedWithoutTheDigestOfItsFiles) {
    const std::string payload = readBundle(bundle_).payload;
    const auto failures = failuresOf([&payload] { static_cast<void>(readStatement(payload)); });
    expectOnly(failures,
               "model.sig is not the signature of a model: the system's cryptography fails");
}

TEST_F(SignatureWithoutMemory, IsNotAccepted) {
    const auto failures =
        failuresOf([this] { static_cast<void>(verifySignature(bundle_, {publicKey_})); });
    ASSERT_EQ(failures.size(), kMostAllocations);
    for (const std::string& failure : failures) {
        EXPECT_EQ(failure, "model.sig is not signed by a trusted key");
    }
}

TEST_F(SignatureWithoutMemory, IsNotMade) {
    platform::EcPrivateKey key;
    std::string problem;
    ASSERT_EQ(key.read(testing::readSignatureData("private/p256.pem"), std::nullopt, problem),
              platform::PrivateKeyReading::kDone);
    const TrustedKey half = readPublicKeyInfo(key.publicInfo(), problem).value();
    const SignedFiles files = {{"a", platform::Sha256Digest{}}};
    static_cast<void>(signFiles(files, key, half));
    const auto failures = failuresOf([&] { static_cast<void>(signFiles(files, key, half)); });
    ASSERT_EQ(failures.size(), kMostAllocations);
    for (const std::string& failure : failures) {
        EXPECT_EQ(failure, "The package cannot be signed: the system's cryptography fails");
    }
}

}  // namespace
}  // namespace VelmoraQuavin::internal
