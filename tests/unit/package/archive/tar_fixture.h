#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "package/archive/archived_package.h"
#include "quavin/files.h"
#include "support/file_tree.h"
#include "support/status_matcher.h"
#include "support/tar_archive.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::testing {

/// Bytes in a block of exactly their size, so that instrumented builds catch reads past the end.
class ExactBytes {
public:
    explicit ExactBytes(std::string_view bytes)
        : bytes_(new unsigned char[bytes.size()]), size_(bytes.size()) {
        std::copy(bytes.begin(), bytes.end(), bytes_.get());
    }

    unsigned char* data() const { return bytes_.get(); }
    uint64 size() const { return size_; }
    std::string_view view() const { return {reinterpret_cast<const char*>(bytes_.get()), size_}; }

private:
    std::unique_ptr<unsigned char[]> bytes_;
    std::size_t size_;
};

/// Reads a file from tests/data/tar.
inline std::string readTarData(const std::string& name) {
    std::ifstream stream(std::string(QUAVIN_TEST_DATA) + "/tar/" + name, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (bytes.empty()) {
        throw std::runtime_error("cannot read " + name);
    }
    return bytes;
}

/// "file", with this text in its field for the size.
inline std::string fileOfSize(const std::string& field, std::string_view content) {
    TarFields fields = tarFields("file");
    fields.size = field;
    return tarEntry(fields, content);
}

/// A file "file" containing "content", in the folder "prefix" if the magic allows prefixes.
inline std::string prefixedFile(const std::string& prefix, const std::string& magic) {
    TarFields fields = tarFields("file");
    fields.prefix = prefix;
    fields.magic = magic;
    return tarEntry(fields, "content");
}

/// A directory to extract into, with a file and a directory beside it that must stay as they are.
class TarDestination {
public:
    TarDestination() : destination_(text()) {
        std::filesystem::create_directories(path());
        outer_.write("level/sentinel", "untouched");
        outer_.write("outside/file", "untouched");
    }

    std::filesystem::path path() const { return outer_.path() / "level" / "destination"; }
    /// The destination's path before extraction.
    std::string text() const { return outer_.entry("level\\destination"); }
    /// The destination's current value.
    std::string result() const { return String(destination_.c_str()).str(); }
    void setDestination(const std::string& text) { destination_ = Filepath(text); }

    std::filesystem::path outer() const { return outer_.path(); }
    std::filesystem::path outside() const { return outer_.path() / "outside"; }
    /// Writes a file below the destination.
    void write(const std::string& name, std::string_view content) const {
        outer_.write("level/destination/" + name, content);
    }
    FileTree tree() const { return treeOf(path()); }
    /// The destination and everything around it.
    FileTree all() const { return treeOf(outer_.path()); }

    QuavinStatus extract(const std::string& archive) {
        const ExactBytes bytes(archive);
        QuavinStatus status = FileUtils::extractTarball(bytes.data(), bytes.size(), destination_);
        EXPECT_EQ(bytes.view(), archive);
        return status;
    }
    QuavinStatus extractUnbounded(const std::string& archive) {
        const ExactBytes bytes(archive);
        QuavinStatus status = FileUtils::extractTarball(bytes.data(), destination_);
        EXPECT_EQ(bytes.view(), archive);
        return status;
    }

private:
    TempDirectory outer_;
    Filepath destination_;
};

/// What reading a package from an archive returns as a status.
inline QuavinStatus readPackage(const std::string& archive) {
    const ExactBytes bytes(archive);
    try {
        internal::readArchivedPackage(bytes.data(), bytes.size());
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

/// Extraction tests, each with its own destination.
class TarExtraction : public ::testing::Test {
protected:
    /// Expects `archive` to be refused and nothing at all to be written, and the same refusal if a
    /// package is looked for in it.
    template <typename TextMatcher>
    void expectRefused(const std::string& archive, STATUS_CODE code, const TextMatcher& text) {
        to_.setDestination(to_.text());
        const FileTree before = to_.all();
        EXPECT_THAT(to_.extract(archive), IsStatusWith(code, text));
        EXPECT_EQ(to_.all(), before);
        EXPECT_EQ(to_.result(), to_.text());
        EXPECT_THAT(readPackage(archive), IsStatusWith(code, text));
    }

    TarDestination to_;
};

}  // namespace VelmoraQuavin::testing
