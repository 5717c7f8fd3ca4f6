# What every test program is compiled with, as the interface target quavin_test_settings.

if(CMAKE_CROSSCOMPILING)
  # From the sources that Debian's package brings.
  set(INSTALL_GTEST OFF)
  add_subdirectory(/usr/src/googletest "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
else()
  find_package(GTest REQUIRED)
endif()
include(GoogleTest)

add_library(quavin_test_settings INTERFACE)
target_link_libraries(quavin_test_settings INTERFACE GTest::gmock GTest::gtest_main)
# The framework's headers take longer to compile than most tests.
target_precompile_headers(quavin_test_settings INTERFACE <gmock/gmock.h> <gtest/gtest.h>)
if(NOT MSVC)
  # What is tested is optimised; the tests themselves need not be.
  target_compile_options(quavin_test_settings INTERFACE $<$<CONFIG:Release>:-O1>)
  if(QUAVIN_SANITIZE)
    target_compile_options(quavin_test_settings INTERFACE -O0 -g1)
  endif()
endif()
