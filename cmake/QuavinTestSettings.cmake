# Settings of all test programs, as the interface target quavin_test_settings.

if(CMAKE_CROSSCOMPILING)
  # From the sources in Debian's package.
  set(INSTALL_GTEST OFF)
  add_subdirectory("${QUAVIN_HOST_PREFIX}/src/googletest" "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
else()
  find_package(GTest REQUIRED)
endif()
include(GoogleTest)

add_library(quavin_test_settings INTERFACE)
if(MSVC)
  target_compile_options(quavin_test_settings INTERFACE /wd4834)
else()
  # EXPECT_THROW takes calls as statements, which drop their status.
  target_compile_options(quavin_test_settings INTERFACE -UQUAVIN_NODISCARD_STATUS)
endif()
target_link_libraries(quavin_test_settings INTERFACE GTest::gmock GTest::gtest_main)
if(NOT QUAVIN_UNITY_BUILD)
  # The framework's headers take longer to compile than most tests.
  target_precompile_headers(quavin_test_settings INTERFACE <gmock/gmock.h> <gtest/gtest.h>)
endif()
if(CMAKE_CROSSCOMPILING_EMULATOR AND NOT WIN32)
  target_sources(quavin_test_settings INTERFACE "${PROJECT_SOURCE_DIR}/tests/support/emulated_death_tests.cpp")
  target_compile_definitions(quavin_test_settings INTERFACE QUAVIN_TEST_EMULATOR="${CMAKE_CROSSCOMPILING_EMULATOR}")
endif()
if(NOT MSVC)
  # The code under test is fully optimised. The tests are not, since that would take a third of their compile time; so
  # they do without checked calls, which need optimisation.
  target_compile_options(quavin_test_settings INTERFACE $<$<CONFIG:Release>:-O0;-U_FORTIFY_SOURCE>)
  if(QUAVIN_SANITIZE)
    target_compile_options(quavin_test_settings INTERFACE -O0 -g1)
  endif()
endif()

# quavin_discover_tests(<program> <prefix> [<discovery option>...]): adds one ctest entry for the whole program, which
# writes a report of its tests, or one entry per test. Every start loads the runtime, which takes longer than most tests.
option(QUAVIN_WHOLE_TEST_PROGRAMS "One ctest entry per test program instead of one per test" ON)
function(quavin_discover_tests program prefix)
  quavin_compile_together(${program})
  if(NOT QUAVIN_WHOLE_TEST_PROGRAMS)
    gtest_discover_tests(${program} TEST_PREFIX "${prefix}" DISCOVERY_TIMEOUT 60 NO_PRETTY_VALUES ${ARGN})
    return()
  endif()
  cmake_parse_arguments(discovery "" "" PROPERTIES ${ARGN})
  set(test "${prefix}${program}")
  set(reports "${PROJECT_BINARY_DIR}/test-reports")
  if(WIN32 AND CMAKE_CROSSCOMPILING)
    set(reports "Z:${reports}") # the emulator's drive for the whole file system; without one it would be relative
  endif()
  add_test(NAME ${test} COMMAND ${program} "--gtest_output=json:${reports}/${test}.json")
  set_tests_properties(${test} PROPERTIES TIMEOUT 1200 ${discovery_PROPERTIES})
endfunction()
