// Extracting archives and decrypting secured files, from C.

#include "integration/c/c_test.h"
#include "support/file_tree.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::StrEq;

class CArchives : public ::testing::Test {
protected:
    TempDirectory directory_;
    const std::string archive_ = PackageInMemory(affineNetwork()).archive();
};

TEST_F(CArchives, AreExtractedAndTellTheirFirstDirectory) {
    std::array<char, 1024> first{};
    std::size_t needed = 0;
    ASSERT_THAT(
        quavin_extract_archive(archive_.data(), archive_.size(), nullptr, directory_.text().c_str(),
                               first.data(), first.size(), &needed),
        Succeeds());
    EXPECT_EQ(needed, std::strlen(first.data()) + 1);
    EXPECT_EQ(directory_.read("model/net.xml"), affineNetwork().topology());

    ASSERT_THAT(quavin_init(nullptr), Succeeds());
    quavin_model* model = nullptr;
    const std::string package(first.data());
    EXPECT_THAT(
        quavin_load_directory(package.substr(0, package.find_last_not_of("/\\") + 1).c_str(),
                              nullptr, &model),
        Succeeds());
    EXPECT_THAT(quavin_model_release(model), Succeeds());
    quavin_terminate();
}

TEST_F(CArchives, TellNothingWhereThereIsNoRoom) {
    std::array<char, 4> first = {'a', 'b', 'c', 'd'};
    std::size_t needed = 0;
    ASSERT_THAT(
        quavin_extract_archive(archive_.data(), archive_.size(), nullptr, directory_.text().c_str(),
                               first.data(), first.size(), &needed),
        Succeeds());
    EXPECT_THAT(first, ElementsAre('\0', 'b', 'c', 'd'));
    EXPECT_GT(needed, directory_.text().size());
    EXPECT_THAT(quavin_extract_archive(archive_.data(), archive_.size(), nullptr,
                                       directory_.text().c_str(), first.data(), 0, nullptr),
                Succeeds());
    EXPECT_THAT(quavin_extract_archive(archive_.data(), archive_.size(), nullptr,
                                       directory_.text().c_str(), nullptr, 1024, nullptr),
                Succeeds());
}

TEST_F(CArchives, MayBeSecured) {
    const std::string archive = secured(archive_, countingKey(), BlockFilling::kPkcs7);
    const CryptoKey key = countingKey();
    ASSERT_THAT(quavin_extract_archive(archive.data(), archive.size(), key.data(),
                                       directory_.text().c_str(), nullptr, 0, nullptr),
                Succeeds());
    EXPECT_EQ(directory_.read("model/net.xml"), affineNetwork().topology());
    const CryptoKey other = anotherKey();
    EXPECT_EQ(quavin_extract_archive(archive.data(), archive.size(), other.data(),
                                     directory_.text().c_str(), nullptr, 0, nullptr),
              QUAVIN_TAR_CHECKSUM_MISMATCH);
}

TEST_F(CArchives, ThatAreCutAreRefused) {
    EXPECT_EQ(quavin_extract_archive(archive_.data(), 700, nullptr, directory_.text().c_str(),
                                     nullptr, 0, nullptr),
              QUAVIN_INVALID_ARGUMENTS);
    EXPECT_TRUE(treeOf(directory_.path()).empty());
}

TEST(CDecrypt, GivesThePlainBytesAndTheirPadding) {
    const std::string plain = "exactly 16 bytes";
    const std::string file = secured(plain, countingKey(), BlockFilling::kNone);
    const CryptoKey key = countingKey();
    std::string output(16, '?');
    ASSERT_THAT(quavin_decrypt(file.data(), file.size(), key.data(), output.data(), output.size()),
                Succeeds());
    EXPECT_EQ(output, plain);
}

TEST(CDecrypt, RefusesSizesThatNoSecuredFileHas) {
    const std::string file = secured("exactly 16 bytes", countingKey(), BlockFilling::kNone);
    const CryptoKey key = countingKey();
    std::string output(32, '?');
    for (const std::size_t size : {std::size_t{0}, std::size_t{15}, std::size_t{17},
                                   std::size_t{31}, std::size_t{1} << 32U}) {
        EXPECT_THAT(quavin_decrypt(file.data(), size, key.data(), output.data(), output.size()),
                    FailsWith(QUAVIN_INVALID_ARGUMENTS,
                              StrEq("No secured file has " + std::to_string(size) + " bytes")));
    }
    EXPECT_THAT(quavin_decrypt(file.data(), 32, key.data(), output.data(), 15),
                FailsWith(QUAVIN_INVALID_ARGUMENTS, StrEq("\"output\" needs 16 bytes and has 15")));
    EXPECT_EQ(output, std::string(32, '?'));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
