// Networks described on several threads at once.

#include <gmock/gmock.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "integration/model_test.h"

namespace VelmoraQuavin::testing {
namespace {

constexpr int kRounds = 40;

std::string brokenLayerOf(int thread) {
    return "NoSuchLayer" + std::to_string(thread) + "x";
}

// The engine's failure names the layer, which it does not know.
IrNetwork brokenNetwork(int thread) {
    IrNetwork net("broken");
    const auto x = net.input("x", {1, 4});
    net.output(net.layer(brokenLayerOf(thread), "y", {x}, {1, 4}));
    return net;
}

QuavinStatus describeFolder(const TempDirectory& directory, const std::string& folder) {
    std::vector<ModelFeatureDescriptor> inputs;
    std::vector<ModelFeatureDescriptor> outputs;
    return describeNetwork(Filepath(directory.entry(folder)).append(Filepath("net.xml")),
                           Filepath(directory.entry(folder)).append(Filepath("net.bin")), inputs,
                           outputs);
}

#ifdef QUAVIN_ENGINE_IS_ADAPTER  // others keep texts in their own way
// The runtime keeps a single text of the last failure for the whole process.
TEST(DescribeNetworkOnThreads, FailureTextsBelongToTheirOwnNetwork) {
    constexpr int kThreads = 6;
    const TempDirectory directory;
    for (int thread = 0; thread < kThreads; ++thread) {
        writeNetwork(directory, brokenNetwork(thread), std::to_string(thread));
    }
    std::atomic<int> own{0};
    std::atomic<int> others{0};
    const auto describeRepeatedly = [&](int thread) {
        for (int round = 0; round < kRounds; ++round) {
            const QuavinStatus status = describeFolder(directory, std::to_string(thread));
            const std::string text = status.getDescription().str();
            EXPECT_EQ(status.getCode(), FILE_ERROR);
            EXPECT_NE(text, "");
            if (text.find(brokenLayerOf(thread)) != std::string::npos) {
                ++own;
            } else if (text.find("NoSuchLayer") != std::string::npos) {
                ++others;
            }
        }
    };
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back(describeRepeatedly, thread);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(others, 0);
    // The rest did not get that text; how many depends on how busy the machine is.
    EXPECT_GT(own, 0);
}
#endif

TEST(DescribeNetworkOnThreads, GoodNetworksAreDescribedAlongsideBrokenOnes) {
    const TempDirectory directory;
    writeNetwork(directory, affineNetwork(), "good");
    writeNetwork(directory, brokenNetwork(0), "broken");
    std::atomic<bool> done{false};
    std::thread failing([&] {
        while (!done) {
            EXPECT_EQ(describeFolder(directory, "broken").getCode(), FILE_ERROR);
        }
    });
    for (int round = 0; round < kRounds; ++round) {
        EXPECT_THAT(describeFolder(directory, "good"), IsOk());
    }
    done = true;
    failing.join();
}

}  // namespace
}  // namespace VelmoraQuavin::testing
