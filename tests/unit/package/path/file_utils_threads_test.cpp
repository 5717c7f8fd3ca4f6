#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "quavin/files.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin {
namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 50;

// Writes and reads back `file` and reads `shared`; returns the number of failures.
int countFailures(const Filepath& file, const Filepath& shared, const std::string& content) {
    int failures = 0;
    for (int round = 0; round < kRounds; ++round) {
        FileUtils::writeBinaryDataToFile(content.data(), content.size(), file);
        for (const Filepath& path : {file, shared}) {
            uint64 size = 0;
            const std::unique_ptr<char[]> bytes = FileUtils::readBinaryFileToBuffer(path, size);
            failures += bytes == nullptr || std::string(bytes.get(), size) != content ? 1 : 0;
        }
    }
    return failures;
}

TEST(FileUtilsThreads, OperationsRunOnSeveralThreadsAtOnce) {
    const testing::TempDirectory directory;
    const std::string content(100'000, 'x');
    directory.write("shared", content);
    std::vector<int> failures(kThreads, -1);
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index) {
        threads.emplace_back([&, index] {
            failures[static_cast<std::size_t>(index)] =
                countFailures(Filepath(directory.entry("own" + std::to_string(index))),
                              Filepath(directory.entry("shared")), content);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, std::vector<int>(kThreads, 0));
}

}  // namespace
}  // namespace VelmoraQuavin
