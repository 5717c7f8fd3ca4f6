# Linux arm64 from Debian: g++-aarch64-linux-gnu, and qemu-user-static to run the programs.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc) # for the test framework
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

get_filename_component(quavin_scripts "${CMAKE_CURRENT_LIST_DIR}/../../scripts" ABSOLUTE)

# libcrypto, which the toolchain lacks. CMake reads this file several times; look for it only once.
if(NOT DEFINED ENV{QUAVIN_ARM64_LIBCRYPTO})
  execute_process(
    COMMAND /usr/bin/python3 "${quavin_scripts}/fetch_arm64_libcrypto.py"
    OUTPUT_VARIABLE quavin_libcrypto
    OUTPUT_STRIP_TRAILING_WHITESPACE
    RESULT_VARIABLE quavin_fetch_result)
  if(NOT quavin_fetch_result EQUAL 0)
    message(FATAL_ERROR "libcrypto for arm64 is not in the cache and could not be fetched. Set the environment "
                        "variable QUAVIN_ARM64_LIBCRYPTO to a folder with its include/ and lib/.")
  endif()
  set(ENV{QUAVIN_ARM64_LIBCRYPTO} "${quavin_libcrypto}")
endif()

list(APPEND CMAKE_FIND_ROOT_PATH "$ENV{QUAVIN_ARM64_LIBCRYPTO}" /usr/aarch64-linux-gnu)
# Where the linker finds the dependencies of an installed library.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,$ENV{QUAVIN_ARM64_LIBCRYPTO}/lib")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
set(CMAKE_CROSSCOMPILING_EMULATOR "${quavin_scripts}/run-in-qemu.sh")
