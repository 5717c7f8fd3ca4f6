#include <gtest/gtest.h>

#include "platform/ecdsa_signing.h"
#include "support/signature_data.h"

namespace VelmoraQuavin::internal::platform {
namespace {

class EncryptedPrivateKey : public ::testing::TestWithParam<const char*> {
protected:
    PrivateKeyReading read(std::optional<std::string_view> passphrase) {
        const std::string pem =
            testing::readSignatureData("private/" + std::string(GetParam()) + ".pem");
        return key_.read(pem, passphrase, problem_);
    }

    EcPrivateKey key_;
    std::string problem_;
};

TEST_P(EncryptedPrivateKey, IsReadWithItsPassphrase) {
    EXPECT_EQ(read("passphrase"), PrivateKeyReading::kDone);
    EcPrivateKey plain;
    ASSERT_EQ(plain.read(testing::readSignatureData("private/p256.pem"), std::nullopt, problem_),
              PrivateKeyReading::kDone);
    EXPECT_EQ(key_.publicInfo(), plain.publicInfo());
}

TEST_P(EncryptedPrivateKey, AsksForAPassphrase) {
    EXPECT_EQ(read(std::nullopt), PrivateKeyReading::kNeedsPassphrase);
}

TEST_P(EncryptedPrivateKey, IsRefusedWithAnotherPassphrase) {
    for (const std::string& other :
         {std::string("another"), std::string(), std::string(5000, 'x')}) {
        EXPECT_EQ(read(other), PrivateKeyReading::kRefused);
        EXPECT_EQ(problem_, "its passphrase is another one, or it is damaged");
    }
}

INSTANTIATE_TEST_SUITE_P(Forms, EncryptedPrivateKey,
                         ::testing::Values("encrypted", "encrypted_older"));

TEST(PrivateKeyWithoutItsPublicHalf, IsCompleted) {
    EcPrivateKey key;
    EcPrivateKey whole;
    std::string problem;
    ASSERT_EQ(
        key.read(testing::readSignatureData("private/no_public_half.pem"), std::nullopt, problem),
        PrivateKeyReading::kDone);
    ASSERT_EQ(whole.read(testing::readSignatureData("private/p256.pem"), std::nullopt, problem),
              PrivateKeyReading::kDone);
    EXPECT_EQ(key.publicInfo(), whole.publicInfo());
}

TEST(Passphrase, IsNotAskedForWithoutRoomForIt) {
    EXPECT_EQ(askForPassphrase("?", nullptr, 0), std::nullopt);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
