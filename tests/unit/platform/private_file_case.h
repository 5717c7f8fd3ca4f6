#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "platform/private_file.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {

/// Reads and writes private files in the test's own directory.
class PrivateFile : public ::testing::Test {
protected:
    std::string read(const std::string& name, OpenToOthers others = OpenToOthers::kRefused) {
        std::string problem;
        outcome_ = readPrivateFile(directory_.entry(name), others, buffer_.data(), buffer_.size(),
                                   size_, problem);
        return problem;
    }
    std::string write(const std::string& name, const std::string& content,
                      Readers readers = Readers::kOwner) {
        return writeNewFile(directory_.entry(name),
                            reinterpret_cast<const unsigned char*>(content.data()), content.size(),
                            readers);
    }
    std::string replace(const std::string& name, const std::string& content,
                        Readers readers = Readers::kEveryone) {
        return replaceFile(directory_.entry(name),
                           reinterpret_cast<const unsigned char*>(content.data()), content.size(),
                           readers);
    }
    std::string got() const { return {reinterpret_cast<const char*>(buffer_.data()), size_}; }

    testing::TempDirectory directory_;
    std::array<unsigned char, 8> buffer_{};
    std::size_t size_ = 0;
    PrivateReading outcome_ = PrivateReading::kFailed;
};

}  // namespace VelmoraQuavin::internal::platform
