#include "quavin/version.h"

#include <gtest/gtest.h>

#include <string>

namespace VelmoraQuavin {
namespace {

TEST(VersionTest, LibraryReportsTheVersionOfItsHeaders) {
    EXPECT_EQ(getVersion(), std::to_string(QUAVIN_VERSION_MAJOR) + "." +
                                std::to_string(QUAVIN_VERSION_MINOR) + "." +
                                std::to_string(QUAVIN_VERSION_PATCH));
}

}  // namespace
}  // namespace VelmoraQuavin
