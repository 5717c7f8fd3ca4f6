// Memory runs out while a signature is verified.

#include <map>
#include <new>
#include <string>

#include "faults/allocation_sweep.h"
#include "package/signature/hex_digest.h"
#include "package/signature/verify_signature.h"
#include "quavin/status.h"
#include "unit/package/signature/signature_fixture.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::SignedFiles;
using internal::TrustedKey;
using internal::verifySignature;

// As sha256sum prints them for tests/data/signature/package.
const std::map<std::string, std::string> kDigests = {
    {"manifest.json", "c4bfa01dc1afa4d385df79d58ae5f1a210ffba8afc52333d966f4bcb1d471f71"},
    {"net.bin", "9c69d9d5f6273ccb1d5d30a3fa597a94e3d93299d8e78e1ab6be4167df2dcb51"},
    {"net.xml", "9e302d9e848b1862763eb34e1d82f27ca5b4bbf7050180ecf1f84ab2aa0f3cd5"}};

std::map<std::string, std::string> textsOf(const SignedFiles& files) {
    std::map<std::string, std::string> texts;
    for (const auto& [name, digest] : files) {
        texts[name] = internal::hexText(digest);
    }
    return texts;
}

class VerifyingAllocations : public ::testing::Test {
protected:
    // Verifies a bundle; the cryptography cannot tell a lack of memory from a signature that is
    // wrong.
    bool passes(const std::string& bundle) const {
        try {
            return !verifySignature(bundle, keys_).empty();
        } catch (const std::bad_alloc&) {
        } catch (const SignatureException&) {
        }
        return false;
    }

    const std::vector<TrustedKey> keys_ = {readKey("p384"), readKey("p256")};
};

TEST_F(VerifyingAllocations, FailAndTheNextVerificationIsRight) {
    const std::string right = readSignatureData("package/model.sig");
    bool passed = false;
    sweepAllocations(
        kAllAllocations, [&] { passed = passes(right); },
        [&](bool happened) {
            EXPECT_NE(passed, happened);
            EXPECT_EQ(textsOf(verifySignature(right, keys_)), kDigests);
        });
}

TEST_F(VerifyingAllocations, NeverLetAWrongSignaturePass) {
    for (const char* name : {"payload_changed", "other_key_without_hint", "s_zero"}) {
        SCOPED_TRACE(name);
        const std::string wrong = readBundle(name);
        bool passed = false;
        sweepAllocations(
            kAllAllocations, [&] { passed = passes(wrong); },
            [&](bool /*happened*/) { EXPECT_FALSE(passed); });
        EXPECT_THROW(verifySignature(wrong, keys_), SignatureException);
    }
}

TEST_F(VerifyingAllocations, OfAKeyFailAndItIsReadNextTime) {
    const std::string pem = readPem("p256");
    bool read = false;
    sweepAllocations(
        kAllAllocations,
        [&] {
            read = false;
            try {
                std::string problem;
                read = internal::readPublicKey(pem, problem).has_value();
            } catch (const std::bad_alloc&) {
            }
        },
        [&](bool happened) {
            EXPECT_NE(read, happened);
            std::string problem;
            EXPECT_TRUE(internal::readPublicKey(pem, problem).has_value()) << problem;
        });
}

}  // namespace
}  // namespace VelmoraQuavin::testing
