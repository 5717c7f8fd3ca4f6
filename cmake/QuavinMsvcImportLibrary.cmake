# Beside the toolchain's own import library, makes quavin_on_device_sdk.lib, which hosts built with Microsoft's tools
# link to use the C interface.

find_program(QUAVIN_DLLTOOL NAMES llvm-dlltool-14 llvm-dlltool)
mark_as_advanced(QUAVIN_DLLTOOL)
set(quavin_msvc_import_library "")
if(NOT QUAVIN_DLLTOOL)
  message(STATUS "Without llvm-dlltool (Debian's llvm-14) there is no import library for Microsoft's linker")
  return()
endif()

set(quavin_msvc_import_library "$<TARGET_LINKER_FILE_DIR:quavin_on_device_sdk>/quavin_on_device_sdk.lib")
add_custom_command(
  TARGET quavin_on_device_sdk
  POST_BUILD
  COMMAND
    "${CMAKE_COMMAND}" "-DDLL=$<TARGET_FILE:quavin_on_device_sdk>" "-DLIBRARY=${quavin_msvc_import_library}"
    "-DOBJDUMP=${CMAKE_OBJDUMP}" "-DDLLTOOL=${QUAVIN_DLLTOOL}" -P
    "${PROJECT_SOURCE_DIR}/cmake/MakeMsvcImportLibrary.cmake"
  VERBATIM)
