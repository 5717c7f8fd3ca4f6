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
if(CMAKE_CROSSCOMPILING_EMULATOR AND NOT WIN32)
  target_sources(quavin_test_settings INTERFACE "${PROJECT_SOURCE_DIR}/tests/support/emulated_death_tests.cpp")
  target_compile_definitions(quavin_test_settings INTERFACE QUAVIN_TEST_EMULATOR="${CMAKE_CROSSCOMPILING_EMULATOR}")
endif()
if(NOT MSVC)
  # What is tested is optimised; the tests themselves need not be.
  target_compile_options(quavin_test_settings INTERFACE $<$<CONFIG:Release>:-O1>)
  if(QUAVIN_SANITIZE)
    target_compile_options(quavin_test_settings INTERFACE -O0 -g1)
  endif()
endif()

# quavin_discover_tests(<program> <prefix> [<discovery option>...]): one entry of ctest for a whole program,
# which leaves a report of its tests; or an entry for each test. Every start loads the runtime, which takes
# longer than most tests.
option(QUAVIN_WHOLE_TEST_PROGRAMS "Run each test program whole, not a process for each test" ON)
function(quavin_discover_tests program prefix)
  if(NOT QUAVIN_WHOLE_TEST_PROGRAMS)
    gtest_discover_tests(${program} TEST_PREFIX "${prefix}" DISCOVERY_TIMEOUT 60 NO_PRETTY_VALUES ${ARGN})
    return()
  endif()
  cmake_parse_arguments(discovery "" "" PROPERTIES ${ARGN})
  set(test "${prefix}${program}")
  add_test(NAME ${test} COMMAND ${program} "--gtest_output=json:${PROJECT_BINARY_DIR}/test-reports/${test}.json")
  set_tests_properties(${test} PROPERTIES TIMEOUT 1200 ${discovery_PROPERTIES})
endfunction()
