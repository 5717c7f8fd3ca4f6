// Death tests start their program anew. The system can't start one for another processor: the
// emulator has to be named in front of it. For builds whose tests an emulator runs.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

const bool kEmulatorIsNamed = [] {
    const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
    ::testing::internal::SetInjectableArgvs(
        std::vector<std::string>{QUAVIN_TEST_EMULATOR, program});
    return true;
}();

}  // namespace
