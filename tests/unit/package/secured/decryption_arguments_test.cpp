// Arguments that AES_decrypt refuses: FAILURE without a message, and nothing written.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

#include "quavin/encryption.h"
#include "support/status_matcher.h"
#include "unit/package/secured/secured_bytes.h"

namespace VelmoraQuavin {
namespace {

using testing::Bytes;

constexpr unsigned int kLength = 80;
constexpr unsigned int kPlaintextSize = kLength - 16;

// One block of memory with a component in the middle and room for the plaintext around it.
class DecryptionArguments : public ::testing::Test {
protected:
    DecryptionArguments()
        : key_(testing::randomBytes(16, 2)),
          plaintext_(testing::randomBytes(kPlaintextSize, 3)),
          component_(testing::secure(plaintext_, key_)),
          memory_(3 * std::size_t{kLength}, 0xA5) {
        std::copy(component_.begin(), component_.end(), memory_.begin() + kLength);
    }

    unsigned char* input() { return memory_.data() + kLength; }
    QuavinStatus decrypt(const unsigned char* input, unsigned int length, unsigned char* output,
                         const unsigned char* key) {
        return QuavinEncryption().AES_decrypt(input, length, output, key);
    }
    void expectRefused(const unsigned char* input, unsigned int length, unsigned char* output,
                       const unsigned char* key) {
        const Bytes before = memory_;
        EXPECT_THAT(decrypt(input, length, output, key), testing::IsStatus(FAILURE, ""));
        EXPECT_EQ(memory_, before);
    }

    Bytes key_;
    Bytes plaintext_;
    Bytes component_;
    Bytes memory_;
};

TEST_F(DecryptionArguments, ALengthThatIsNotAMultipleOf16Fails) {
    for (const unsigned int length : {17u, 24u, 31u, 33u, 63u, 65u, 79u}) {
        SCOPED_TRACE(length);
        expectRefused(component_.data(), length, memory_.data(), key_.data());
        expectRefused(input(), length, input(), key_.data());
    }
}

TEST_F(DecryptionArguments, ALongLengthThatIsNotAMultipleOf16Fails) {
    Bytes output(100'000, 0xA5);
    const Bytes component(100'001, 0);
    expectRefused(component.data(), 100'001, output.data(), key_.data());
    EXPECT_EQ(output, Bytes(100'000, 0xA5));
}

TEST_F(DecryptionArguments, ALengthBelow16Fails) {
    for (const unsigned int length : {0u, 1u, 15u}) {
        SCOPED_TRACE(length);
        expectRefused(component_.data(), length, memory_.data(), key_.data());
        expectRefused(input(), length, input(), key_.data());
    }
}

TEST_F(DecryptionArguments, ANullInputFails) {
    expectRefused(nullptr, kLength, memory_.data(), key_.data());
    expectRefused(nullptr, 16, memory_.data(), key_.data());
    expectRefused(nullptr, kLength, nullptr, key_.data());
}

TEST_F(DecryptionArguments, ANullKeyFails) {
    expectRefused(component_.data(), kLength, memory_.data(), nullptr);
    expectRefused(input(), kLength, input(), nullptr);
    expectRefused(component_.data(), 16, memory_.data(), nullptr);
}

TEST_F(DecryptionArguments, ANullOutputFailsIfThereIsPlaintext) {
    expectRefused(component_.data(), kLength, nullptr, key_.data());
    expectRefused(component_.data(), 32, nullptr, key_.data());
}

TEST_F(DecryptionArguments, ANullOutputIsAcceptedIfThereIsNoPlaintext) {
    EXPECT_THAT(decrypt(component_.data(), 16, nullptr, key_.data()), testing::IsOk());
}

}  // namespace
}  // namespace VelmoraQuavin
