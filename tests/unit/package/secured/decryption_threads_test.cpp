#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "quavin/encryption.h"
#include "unit/package/secured/secured_bytes.h"

namespace VelmoraQuavin {
namespace {

using testing::Bytes;

constexpr unsigned int kThreadCount = 4;
constexpr int kCalls = 100;

// Decrypts a component repeatedly with the thread's own key; returns the number of failures.
int countFailures(QuavinEncryption& encryption, unsigned int seed) {
    const Bytes key = testing::randomBytes(16, seed);
    const Bytes plaintext = testing::randomBytes(20'000, seed + kThreadCount);
    const Bytes component = testing::secure(plaintext, key);
    const auto length = static_cast<unsigned int>(component.size());
    int failures = 0;
    for (int call = 0; call < kCalls; ++call) {
        Bytes apart(plaintext.size());
        unsigned char* output = apart.data();
        failures +=
            encryption.AES_decrypt(component.data(), length, output, key.data()).ok() ? 0 : 1;
        failures += apart == plaintext ? 0 : 1;
        Bytes inPlace = component;
        output = inPlace.data();
        failures += encryption.AES_decrypt(inPlace.data(), length, output, key.data()).ok() ? 0 : 1;
        inPlace.resize(plaintext.size());
        failures += inPlace == plaintext ? 0 : 1;
    }
    return failures;
}

TEST(DecryptionThreads, CallsRunOnSeveralThreadsAtOnce) {
    QuavinEncryption encryption;
    std::vector<int> failures(kThreadCount, -1);
    std::vector<std::thread> threads;
    for (unsigned int index = 0; index < kThreadCount; ++index) {
        threads.emplace_back([&, index] { failures[index] = countFailures(encryption, index); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, std::vector<int>(kThreadCount, 0));
}

}  // namespace
}  // namespace VelmoraQuavin
