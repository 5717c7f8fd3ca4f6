// Archives encrypted with OpenSSL.

#include <gtest/gtest.h>

#include <string>

#include "support/secured_file.h"
#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::BlockFilling;
using testing::CryptoKey;
using testing::ExactBytes;
using testing::fileInTree;
using testing::FileTree;
using testing::IsOk;
using testing::IsStatus;
using testing::kDirectoryInTree;
using testing::listingOf;
using testing::readTarData;
using testing::secured;
using testing::tarDirectory;
using testing::tarEnd;
using testing::TarExtraction;
using testing::tarFile;

class TarSecured : public TarExtraction {
protected:
    QuavinStatus extractSecured(const std::string& component) {
        return extractSecured(component, component.size());
    }
    // Also checks that neither the component nor the key is modified.
    QuavinStatus extractSecured(const std::string& component, uint64 length) {
        const ExactBytes bytes(component);
        const CryptoKey key = key_;
        Filepath destination(to_.text());
        QuavinStatus status =
            FileUtils::extractSecuredTarball(bytes.data(), length, key_.data(), destination);
        EXPECT_EQ(bytes.view(), component);
        EXPECT_EQ(key_, key);
        result_ = String(destination.c_str()).str();
        return status;
    }
    void expectRefusedLength(const std::string& component, uint64 length) {
        EXPECT_THAT(extractSecured(component, length),
                    IsStatus(INVALID_ARGUMENTS,
                             "A secured archive has a multiple of 16 bytes, at least 16 and less "
                             "than 4 GiB, not " +
                                 std::to_string(length)));
        expectNothing();
    }
    void expectNothing() {
        EXPECT_EQ(to_.tree(), FileTree());
        EXPECT_EQ(result_, to_.text());
    }

    CryptoKey key_ = testing::countingKey();
    std::string result_;
};

const std::string kArchive = tarDirectory("root/") + tarFile("root/file", "content") + tarEnd();

TEST_F(TarSecured, AnUnpaddedArchiveIsExtracted) {
    EXPECT_THAT(extractSecured(secured(kArchive, key_, BlockFilling::kNone)), IsOk());
    EXPECT_EQ(to_.tree(),
              (FileTree{{"root", kDirectoryInTree}, {"root/file", fileInTree("content")}}));
    EXPECT_EQ(result_, to_.text() + "\\root/");
}

TEST_F(TarSecured, APaddedArchiveIsExtracted) {
    const std::string component = secured(kArchive, key_, BlockFilling::kPkcs7);
    ASSERT_EQ(component.size(), kArchive.size() + 32);
    EXPECT_THAT(extractSecured(component), IsOk());
    EXPECT_EQ(to_.tree(),
              (FileTree{{"root", kDirectoryInTree}, {"root/file", fileInTree("content")}}));
    EXPECT_EQ(result_, to_.text() + "\\root/");
}

TEST_F(TarSecured, AnArchiveWrittenByGnuTarIsExtracted) {
    EXPECT_THAT(extractSecured(
                    secured(readTarData("accepted/gnu_default.tar"), key_, BlockFilling::kPkcs7)),
                IsOk());
    EXPECT_EQ(listingOf(to_.tree()), readTarData("accepted/gnu_default.listing"));
}

TEST_F(TarSecured, AnArchiveWithoutDirectoriesEmptiesTheDestination) {
    EXPECT_THAT(extractSecured(secured(tarFile("file") + tarEnd(), key_, BlockFilling::kNone)),
                IsOk());
    EXPECT_EQ(result_, "");
}

TEST_F(TarSecured, AWrongKeyCausesAChecksumMismatch) {
    const std::string component = secured(kArchive, key_, BlockFilling::kPkcs7);
    key_[15] ^= 1;
    EXPECT_THAT(extractSecured(component),
                IsStatus(TAR_CHECKSUM_MISMATCH, "Archive entry 1: the header's checksum is wrong"));
    expectNothing();
}

// A wrong key produces this one time in 256.
TEST_F(TarSecured, ALoneZeroByteIsNotAnEndMark) {
    for (const std::size_t zeros : {1u, 16u, 511u}) {
        const std::string plain = std::string(zeros, '\0') + std::string(1024 - zeros, 'x');
        EXPECT_THAT(extractSecured(secured(plain, key_, BlockFilling::kNone)),
                    IsStatus(TAR_CHECKSUM_MISMATCH,
                             "The archive makes no sense: it was encrypted with another key"));
        expectNothing();
    }
}

TEST_F(TarSecured, AnEmptyArchiveEmptiesTheDestination) {
    for (const std::size_t zeros : {512u, 1024u, 10240u}) {
        EXPECT_THAT(extractSecured(secured(std::string(zeros, '\0'), key_, BlockFilling::kPkcs7)),
                    IsOk());
        EXPECT_EQ(result_, "");
        EXPECT_EQ(to_.tree(), FileTree());
    }
}

TEST_F(TarSecured, AChangedByteIsNoticed) {
    std::string component = secured(kArchive, key_, BlockFilling::kNone);
    component[600] = static_cast<char>(component[600] ^ 1);
    EXPECT_THAT(extractSecured(component),
                IsStatus(TAR_CHECKSUM_MISMATCH, "Archive entry 2: the header's checksum is wrong"));
    expectNothing();
}

TEST_F(TarSecured, PaddingIsNotAnEndMark) {
    EXPECT_THAT(
        extractSecured(secured(tarFile("file"), key_, BlockFilling::kPkcs7)),
        IsStatus(INVALID_ARGUMENTS, "Archive entry 2: the archive is cut off in the header"));
    expectNothing();
}

TEST_F(TarSecured, ARefusedArchiveLeavesNothingBehind) {
    const std::string archive = tarFile("good") + tarFile("../bad") + tarEnd();
    EXPECT_THAT(extractSecured(secured(archive, key_, BlockFilling::kPkcs7)),
                IsStatus(INVALID_ARGUMENTS, "Archive entry \"../bad\": its name contains \"..\""));
    expectNothing();
}

TEST_F(TarSecured, LengthsOtherThanWholeBlocksAreRefused) {
    const std::string component = secured(kArchive, key_, BlockFilling::kNone);
    for (const std::size_t length : {0u, 1u, 15u, 17u, 31u, 33u}) {
        expectRefusedLength(component.substr(0, length), length);
    }
    expectRefusedLength(component.substr(0, component.size() - 1), component.size() - 1);
}

// None of the bytes is read.
TEST_F(TarSecured, LengthsOfFourGibibytesOrMoreAreRefused) {
    expectRefusedLength("too short", 4294967296u);
    expectRefusedLength("too short", 18446744073709551600u);
}

TEST_F(TarSecured, AnInitializationVectorAloneIsATruncatedArchive) {
    EXPECT_THAT(extractSecured(std::string(16, 'v')),
                IsStatus(INVALID_ARGUMENTS,
                         "Archive entry 1: the archive is cut off: there is no end mark"));
    expectNothing();
}

TEST_F(TarSecured, NullPointersAreRefused) {
    const ExactBytes bytes(secured(kArchive, key_, BlockFilling::kNone));
    Filepath destination(to_.text());
    const auto isRefused = IsStatus(INVALID_ARGUMENTS, "The archive and its key must not be null");
    EXPECT_THAT(FileUtils::extractSecuredTarball(nullptr, bytes.size(), key_.data(), destination),
                isRefused);
    EXPECT_THAT(FileUtils::extractSecuredTarball(bytes.data(), bytes.size(), nullptr, destination),
                isRefused);
    result_ = String(destination.c_str()).str();
    expectNothing();
}

TEST_F(TarSecured, AnEmptyDestinationIsRefused) {
    const ExactBytes bytes(secured(kArchive, key_, BlockFilling::kNone));
    Filepath destination;
    EXPECT_THAT(
        FileUtils::extractSecuredTarball(bytes.data(), bytes.size(), key_.data(), destination),
        IsStatus(INVALID_ARGUMENTS, "The destination must not be empty"));
}

}  // namespace
}  // namespace VelmoraQuavin
