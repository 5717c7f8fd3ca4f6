# Windows finds a program's libraries in the program's own folder. So all programs and libraries are built into
# one folder, and the DLLs of the toolchain and the engine are put beside them, both there and when installed.

enable_language(RC) # for the version in the library's file properties

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(quavin_program_folders "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
get_property(quavin_is_multi_config GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(quavin_is_multi_config) # each configuration has its own folder below that
  list(TRANSFORM CMAKE_CONFIGURATION_TYPES PREPEND "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/"
       OUTPUT_VARIABLE quavin_program_folders)
endif()
file(MAKE_DIRECTORY ${quavin_program_folders})
# Windows 10; and windows.h without its macros min and max, which only MinGW's C++ headers undefine.
target_compile_definitions(quavin_compiler_settings INTERFACE _WIN32_WINNT=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN)

# quavin_put_beside_programs(<file...>)
function(quavin_put_beside_programs)
  foreach(file IN LISTS ARGN)
    get_filename_component(name "${file}" NAME)
    foreach(folder IN LISTS quavin_program_folders)
      file(CREATE_LINK "${file}" "${folder}/${name}" COPY_ON_ERROR SYMBOLIC)
    endforeach()
  endforeach()
endfunction()

set(quavin_toolchain_dlls "")
# The library and its hosts share the toolchain's runtime, because exceptions cross between them.
if(MINGW)
  foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(
      COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${name}"
      OUTPUT_VARIABLE file
      OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${file}")
      get_filename_component(folder "${CMAKE_CXX_COMPILER}" DIRECTORY)
      set(file "${folder}/${name}")
    endif()
    if(NOT EXISTS "${file}")
      message(FATAL_ERROR "The toolchain's ${name} was not found")
    endif()
    list(APPEND quavin_toolchain_dlls "${file}")
  endforeach()
  quavin_put_beside_programs(${quavin_toolchain_dlls})
endif()
