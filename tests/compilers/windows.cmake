# Checks of what is compiled for Windows.

add_test(
  NAME compilers.public_headers
  COMMAND "${Python3_EXECUTABLE}" "${CMAKE_CURRENT_SOURCE_DIR}/check_sources.py" ${options}
          --include "${PROJECT_SOURCE_DIR}/include" ${headers})

# Lints the sources that compile only for Windows, with the same rules and the same program as scripts/check.sh.
execute_process(
  COMMAND "${PROJECT_SOURCE_DIR}/scripts/clang-tidy.sh"
  OUTPUT_VARIABLE clang_tidy
  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
file(GLOB windows_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/platform/windows/*.cpp")
list(TRANSFORM options REPLACE "^--system-include$" "-isystem" OUTPUT_VARIABLE includes)
list(REMOVE_ITEM includes --compiler "${QUAVIN_CLANG}")
add_test(
  NAME compilers.lint
  COMMAND
    "${clang_tidy}" --quiet --checks=-clang-analyzer-* ${windows_sources} -- --target=x86_64-w64-mingw32 -std=c++17 -nostdinc++
    -nostdlibinc ${includes} -D_WIN32_WINNT=0x0A00 -DNOMINMAX -DWIN32_LEAN_AND_MEAN -DQUAVIN_BUILDING_LIBRARY -I "${PROJECT_SOURCE_DIR}/include" -I
    "${PROJECT_SOURCE_DIR}/src")

# Refuses what MinGW accepts but Microsoft's headers would not, with the macros that the sources are
# compiled with.
file(GLOB_RECURSE windows_tests CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/support/*_windows.cpp"
     "${PROJECT_SOURCE_DIR}/tests/support/*_cng.cpp")
set(macros "$<TARGET_PROPERTY:quavin_compiler_settings,INTERFACE_COMPILE_DEFINITIONS>")
add_test(
  NAME compilers.microsofts_headers
  COMMAND
    "${Python3_EXECUTABLE}" "${CMAKE_CURRENT_SOURCE_DIR}/check_sources.py" ${options}
    --in-front "${CMAKE_CURRENT_SOURCE_DIR}/like_microsoft.h" --include "${PROJECT_SOURCE_DIR}/include"
    --include "${PROJECT_SOURCE_DIR}/src" --include "${PROJECT_SOURCE_DIR}/tests" --define QUAVIN_BUILDING_LIBRARY
    "--define=$<JOIN:${macros},;--define=>" ${windows_sources} ${windows_tests}
  COMMAND_EXPAND_LISTS)

quavin_compilers_test(check_sources ${options})

add_test(
  NAME compilers.msvc_library
  COMMAND "${Python3_EXECUTABLE}" -m unittest msvc_library_test
  WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
set_tests_properties(
  compilers.msvc_library
  PROPERTIES
    ENVIRONMENT
    "QUAVIN_CMAKE=${CMAKE_COMMAND};QUAVIN_DLL=$<TARGET_FILE:quavin_on_device_sdk>;QUAVIN_MSVC_LIBRARY=$<TARGET_LINKER_FILE_DIR:quavin_on_device_sdk>/quavin_on_device_sdk.lib;QUAVIN_NM=${CMAKE_NM};QUAVIN_OBJDUMP=${CMAKE_OBJDUMP};PYTHONDONTWRITEBYTECODE=1"
)
