// Memory runs out while archives are unpacked.

#include "faults/allocation_sweep.h"
#include "quavin/files.h"
#include "support/file_tree.h"
#include "support/secured_file.h"
#include "support/status_matcher.h"
#include "support/system.h"
#include "support/tar_archive.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::testing {
namespace {

class UnpackingAllocations : public ::testing::Test {
protected:
    // A destination that one file is already in.
    UnpackingAllocations() { directory_.write("model/old", "old"); }

    // Every file is the old or the new one, whole.
    void expectWhole() const {
        for (const auto& [name, entry] : treeOf(directory_.path())) {
            const auto expected = done_.find(name);
            ASSERT_NE(expected, done_.end()) << name;
            EXPECT_TRUE(entry == expected->second ||
                        (name == "model/old" && entry == fileInTree("old")))
                << name;
        }
    }
    template <typename Unpack>
    void sweep(Unpack unpack) {
        const Filepath to(directory_.text());
        Filepath destination = to;
        QuavinStatus status;
        const auto run = [&] { status = unpack(destination); };
        sweepAllocations(kAllAllocations, run, [&](bool happened) {
            EXPECT_NE(status.ok(), happened);
            if (happened) {
                // The cryptography of Windows needs memory of ours, and does not say what it lacks.
                EXPECT_THAT(status, ::testing::AnyOf(
                                        IsStatusWith(FAILURE, ::testing::Not("")),
                                        IsStatusWith(FILE_ERROR, "Could not decrypt the archive")));
                expectWhole();
            }
            destination = to;
            run();
            EXPECT_THAT(status, IsOk());
            EXPECT_EQ(treeOf(directory_.path()), done_);
            removeTree(directory_.path());
            directory_.write("model/old", "old");
            destination = to;
        });
    }

    const std::string archive_ = tarDirectory("model/") + tarFile("model/old", "new") +
                                 tarFile("model/deep/file", std::string(3000, 'x')) +
                                 tarFile("model/empty") + tarEnd();
    const FileTree done_ = {{"model", kDirectoryInTree},
                            {"model/old", fileInTree("new")},
                            {"model/deep", kDirectoryInTree},
                            {"model/deep/file", fileInTree(std::string(3000, 'x'))},
                            {"model/empty", fileInTree("")}};
    TempDirectory directory_;
};

TEST_F(UnpackingAllocations, OfAnArchive) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(archive_.data());
    sweep([&](Filepath& destination) {
        return FileUtils::extractTarball(bytes, archive_.size(), destination);
    });
}

TEST_F(UnpackingAllocations, OfAnEncryptedArchive) {
    const CryptoKey key = countingKey();
    const std::string archive = secured(archive_, key, BlockFilling::kPkcs7);
    const auto* const bytes = reinterpret_cast<const unsigned char*>(archive.data());
    sweep([&](Filepath& destination) {
        return FileUtils::extractSecuredTarball(bytes, archive.size(), key.data(), destination);
    });
}

}  // namespace
}  // namespace VelmoraQuavin::testing
