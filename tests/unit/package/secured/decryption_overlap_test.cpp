// The plaintext may be written anywhere, even over the component.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>

#include "quavin/encryption.h"
#include "support/status_matcher.h"
#include "unit/package/secured/secured_bytes.h"

namespace VelmoraQuavin {
namespace {

using testing::Bytes;

class DecryptionOverlap : public ::testing::TestWithParam<std::size_t> {
protected:
    DecryptionOverlap()
        : key_(testing::randomBytes(16, 2)),
          plaintext_(testing::randomBytes(GetParam(), 3)),
          component_(testing::secure(plaintext_, key_)) {}

    // Decrypts to `offset` bytes past the start of the component, which is in the middle of a
    // larger block; checks the plaintext and that nothing outside it changes.
    void expectPlaintextAt(std::ptrdiff_t offset) const {
        const auto start = static_cast<std::ptrdiff_t>(component_.size());
        Bytes memory(3 * component_.size(), 0xA5);
        std::copy(component_.begin(), component_.end(), memory.begin() + start);
        Bytes expected = memory;
        std::copy(plaintext_.begin(), plaintext_.end(), expected.begin() + start + offset);

        unsigned char* output = memory.data() + start + offset;
        EXPECT_THAT(QuavinEncryption().AES_decrypt(memory.data() + start,
                                                   static_cast<unsigned int>(component_.size()),
                                                   output, key_.data()),
                    testing::IsOk())
            << offset;
        EXPECT_TRUE(memory == expected) << offset;
    }

    Bytes key_;
    Bytes plaintext_;
    Bytes component_;
};

TEST_P(DecryptionOverlap, PlaintextMayBeginBeforeTheComponent) {
    const auto size = static_cast<std::ptrdiff_t>(plaintext_.size());
    for (const std::ptrdiff_t offset : {-1, -15, -16, -17, -8191, -8192, -8193}) {
        expectPlaintextAt(std::max(offset, 1 - size));
    }
    expectPlaintextAt(1 - size);
}

TEST_P(DecryptionOverlap, PlaintextMayBeginInsideTheComponent) {
    const auto last = static_cast<std::ptrdiff_t>(component_.size()) - 1;
    for (const std::ptrdiff_t offset :
         {0, 1, 15, 16, 17, 31, 32, 33, 8191, 8192, 8193, 8207, 8208, 8209}) {
        expectPlaintextAt(std::min(offset, last));
    }
    expectPlaintextAt(last);
}

TEST_P(DecryptionOverlap, PlaintextMayTouchTheComponentOnEitherSide) {
    expectPlaintextAt(-static_cast<std::ptrdiff_t>(plaintext_.size()));
    expectPlaintextAt(static_cast<std::ptrdiff_t>(component_.size()));
}

INSTANTIATE_TEST_SUITE_P(, DecryptionOverlap, ::testing::Values(16, 64, 8192, 8208, 20'000),
                         [](const auto& instance) { return std::to_string(instance.param); });

}  // namespace
}  // namespace VelmoraQuavin
