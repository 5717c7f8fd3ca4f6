# Compiler options of all targets of this project, as the interface target quavin_compiler_settings.

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(QUAVIN_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()
find_program(QUAVIN_CCACHE ccache)
if(QUAVIN_CCACHE AND QUAVIN_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${QUAVIN_CCACHE}")
endif()

add_library(quavin_compiler_settings INTERFACE)
target_compile_features(quavin_compiler_settings INTERFACE cxx_std_17)
target_compile_definitions(quavin_compiler_settings INTERFACE QUAVIN_NODISCARD_STATUS)
if(MSVC)
  target_compile_options(quavin_compiler_settings INTERFACE /W4 /permissive- /utf-8
                         # Standard types in exported classes are fine: library and host share one toolchain.
                         /wd4251 /wd4275)
  if(QUAVIN_WARNINGS_AS_ERRORS)
    target_compile_options(quavin_compiler_settings INTERFACE /WX)
  endif()
else()
  target_compile_options(quavin_compiler_settings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  if(QUAVIN_WARNINGS_AS_ERRORS)
    target_compile_options(quavin_compiler_settings INTERFACE -Werror)
  endif()
endif()
if(QUAVIN_SANITIZE AND MSVC)
  message(FATAL_ERROR "QUAVIN_SANITIZE supports only GCC and clang")
elseif(QUAVIN_SANITIZE)
  # Undefined behaviour ends the program too, so that a test with it fails.
  set(sanitizers -fsanitize=${QUAVIN_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  # Plain char is unsigned, as on arm64: so the tests that are left out there (any_processor) see that too.
  target_compile_options(quavin_compiler_settings INTERFACE ${sanitizers} -O1 -funsigned-char)
  target_link_options(quavin_compiler_settings INTERFACE ${sanitizers})
elseif(QUAVIN_HARDENING)
  include(QuavinHardening)
endif()
if(QUAVIN_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang" OR NOT QUAVIN_BUILD_TESTS)
    message(FATAL_ERROR "QUAVIN_FUZZ needs clang, and QUAVIN_BUILD_TESTS")
  endif()
  set(ignored "${PROJECT_SOURCE_DIR}/fuzz/ignored.txt")
  # Neither ccache nor ninja looks into this file: the first is left out, and a macro shows the second that it changed.
  set(CMAKE_CXX_COMPILER_LAUNCHER "")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${ignored}")
  file(SHA256 "${ignored}" ignored_digest)
  target_compile_options(quavin_compiler_settings INTERFACE "-fsanitize-ignorelist=${ignored}")
  target_compile_definitions(quavin_compiler_settings INTERFACE "QUAVIN_FUZZ_IGNORED_${ignored_digest}")
endif()

# quavin_private_target(<target>): applies the settings common to all objects, libraries and programs of this project.
function(quavin_private_target target)
  target_link_libraries(${target} PRIVATE quavin_compiler_settings)
  set_target_properties(
    ${target}
    PROPERTIES CXX_EXTENSIONS OFF
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON
               POSITION_INDEPENDENT_CODE ON)
endfunction()

# quavin_compile_together(<target> [GROUP]): compiles its sources several at a time, or those of a group together, since
# most of the time goes into headers and templates that they share. So the names in their unnamed namespaces must differ.
option(QUAVIN_UNITY_BUILD "Compile several sources at a time" ON)
function(quavin_compile_together target)
  if(QUAVIN_UNITY_BUILD)
    set(modes BATCH ${ARGN})
    list(GET modes -1 mode)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE ${mode} UNITY_BUILD_BATCH_SIZE 20)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      # Meant for headers: it takes every source for one but the first.
      target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
    endif()
  endif()
endfunction()
