// Failures of the system's cryptography: each step of a decryption fails once.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "platform/aes.h"
#include "quavin/encryption.h"
#include "support/case_name.h"
#include "support/status_matcher.h"
#include "unit/package/secured/secured_bytes.h"
#include "unit/platform/aes_scratch_windows.h"
#include "unit/platform/faulty_cng_windows.h"

namespace VelmoraQuavin {
namespace {

using internal::platform::decryptAes128Cbc;
using internal::platform::kAesKeySize;
using testing::AesScratchWatch;
using testing::Bytes;
using testing::CngStep;
using testing::FaultyCng;

constexpr std::size_t kSize = 20'480;

const std::vector<std::string> kAll{"key", "wiped object", "provider"};

struct Row {
    const char* name;
    CngStep failing;
    std::vector<std::string> released;
    int scratches;
};

class CngFailure : public ::testing::TestWithParam<Row> {
protected:
    CngFailure()
        : key_(testing::randomBytes(kAesKeySize, 1)),
          plaintext_(testing::randomBytes(kSize, 2)),
          component_(testing::secure(plaintext_, key_)) {}

    QuavinStatus decryptByInterface(const Bytes& input, unsigned char* output) {
        return QuavinEncryption().AES_decrypt(input.data(), static_cast<unsigned int>(input.size()),
                                              output, key_.data());
    }

    Bytes key_;
    Bytes plaintext_;
    Bytes component_;
};

TEST_P(CngFailure, LeavesTheOutputUntouchedAndReleasesWhatWasAcquired) {
    Bytes output(kSize, 0xA5);
    const AesScratchWatch scratch(kSize);
    FaultyCng cng(GetParam().failing);
    EXPECT_FALSE(
        decryptAes128Cbc(component_.data(), component_.size(), output.data(), key_.data()));
    EXPECT_EQ(cng.failures(), 1);
    EXPECT_EQ(cng.released(), GetParam().released);
    EXPECT_EQ(scratch.made(), GetParam().scratches);
    EXPECT_EQ(scratch.wasWiped(), GetParam().scratches == 1);
    EXPECT_THAT(output, ::testing::Each(0xA5));
}

TEST_P(CngFailure, FailsWithoutAMessageInSeparateMemory) {
    Bytes output(kSize, 0xA5);
    FaultyCng cng(GetParam().failing);
    EXPECT_THAT(decryptByInterface(component_, output.data()), testing::IsStatus(FAILURE, ""));
    EXPECT_EQ(cng.failures(), 1);
    EXPECT_THAT(output, ::testing::Each(0xA5));
}

TEST_P(CngFailure, FailsWithoutAMessageAndLeavesTheComponentInPlace) {
    Bytes buffer = component_;
    FaultyCng cng(GetParam().failing);
    EXPECT_THAT(decryptByInterface(buffer, buffer.data()), testing::IsStatus(FAILURE, ""));
    EXPECT_EQ(cng.failures(), 1);
    EXPECT_EQ(buffer, component_);
}

INSTANTIATE_TEST_SUITE_P(
    Steps, CngFailure,
    ::testing::Values(Row{"OpeningTheProvider", CngStep::kProvider, {}, 0},
                      Row{"ReadingTheObjectLength", CngStep::kObjectLength, {"provider"}, 0},
                      Row{"AllocatingTheObject", CngStep::kObjectMemory, {"provider"}, 0},
                      Row{"MakingTheKey", CngStep::kKey, {"wiped object", "provider"}, 0},
                      Row{"Decrypting", CngStep::kDecryption, kAll, 1}),
    testing::CaseName());

// The rows above fail only because of their step.
TEST_F(CngFailure, WithoutAFailingStepDecryptionSucceeds) {
    Bytes output(kSize, 0xA5);
    FaultyCng cng(CngStep::kNone);
    EXPECT_TRUE(decryptAes128Cbc(component_.data(), component_.size(), output.data(), key_.data()));
    EXPECT_EQ(cng.released(), kAll);
    EXPECT_EQ(output, plaintext_);
}

}  // namespace
}  // namespace VelmoraQuavin
