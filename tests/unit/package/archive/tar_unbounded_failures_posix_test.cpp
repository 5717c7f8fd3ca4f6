// A removed directory that is still open, which only POSIX systems let a path reach.

#include <fcntl.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/posix/file_descriptor.h"
#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using internal::platform::FileDescriptor;
using testing::expectThrows;
using testing::tarDirectory;
using testing::tarEnd;
using testing::TarExtraction;

using TarRemovedDestination = TarExtraction;

// An entry there is missing and cannot be created.
TEST_F(TarRemovedDestination, CreateDirsExceptionPassesThrough) {
    const fs::path removed = to_.path() / "removed";
    fs::create_directory(removed);
    const FileDescriptor open(::open(removed.c_str(), O_RDONLY | O_DIRECTORY));
    fs::remove(removed);
    const std::string destination = "/proc/self/fd/" + std::to_string(open.get());
    to_.setDestination(destination);
    expectThrows<FileException>([&] { to_.extractUnbounded(tarDirectory("bad/") + tarEnd()); },
                                FILE_ERROR, "Path incorrect : " + destination + "\\bad/");
    EXPECT_EQ(to_.result(), destination);
}

}  // namespace
}  // namespace VelmoraQuavin
