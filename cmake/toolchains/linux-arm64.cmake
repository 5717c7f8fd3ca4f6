# Linux arm64 from Debian: g++-aarch64-linux-gnu, and qemu-user-static to run what was built.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc) # of the test framework
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

get_filename_component(quavin_scripts "${CMAKE_CURRENT_LIST_DIR}/../../scripts" ABSOLUTE)

# libcrypto, which the toolchain does not bring. CMake reads this file often; one look is enough.
if(NOT DEFINED ENV{QUAVIN_ARM64_LIBCRYPTO})
  execute_process(
    COMMAND /usr/bin/python3 "${quavin_scripts}/fetch_arm64_libcrypto.py"
    OUTPUT_VARIABLE quavin_libcrypto
    OUTPUT_STRIP_TRAILING_WHITESPACE
    RESULT_VARIABLE quavin_fetch_result)
  if(NOT quavin_fetch_result EQUAL 0)
    message(FATAL_ERROR "libcrypto for arm64 is not in the cache and could not be fetched. Name a folder with its "
                        "include/ and lib/ in the environment variable QUAVIN_ARM64_LIBCRYPTO.")
  endif()
  set(ENV{QUAVIN_ARM64_LIBCRYPTO} "${quavin_libcrypto}")
endif()

list(APPEND CMAKE_FIND_ROOT_PATH "$ENV{QUAVIN_ARM64_LIBCRYPTO}" /usr/aarch64-linux-gnu)
# The linker follows what an installed library needs itself.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,$ENV{QUAVIN_ARM64_LIBCRYPTO}/lib")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
set(CMAKE_CROSSCOMPILING_EMULATOR "${quavin_scripts}/run-in-qemu.sh")
