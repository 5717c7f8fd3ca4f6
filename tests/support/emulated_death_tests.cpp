// Death tests restart their program. The system cannot start one for another processor, so the
// emulator must precede it on the command line. For builds whose tests run under an emulator.

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
