# What makes errors in memory harder to exploit, in everything that this project builds. It stands in
# quavin_compiler_settings, so hosts are compiled as they choose themselves.

if(MSVC) # whose defaults are the stack's cookies, DYNAMICBASE, NXCOMPAT and HIGHENTROPYVA
  target_compile_options(quavin_compiler_settings INTERFACE /guard:cf)
  target_link_options(quavin_compiler_settings INTERFACE /guard:cf)
  return()
endif()

# Checked calls need an optimising compiler; some define the macro by themselves.
set(quavin_fortify_level 3)
if(WIN32)
  set(quavin_fortify_level 2) # the most that MinGW's headers know
endif()
target_compile_options(
  quavin_compiler_settings
  INTERFACE -fstack-protector-strong
            "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=${quavin_fortify_level}>")
# Not _GLIBCXX_ASSERTIONS: with it the library would need GCC 12's libstdc++ instead of GCC 11's.

if(WIN32)
  target_link_options(quavin_compiler_settings INTERFACE -Wl,--dynamicbase,--nxcompat,--high-entropy-va)
  # What the checks call, where the toolchain has it apart: its static form, or there would be one DLL more to ship.
  # The option of the stack's protector, given to the linker, would ask for that DLL.
  execute_process(
    COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=libssp.a
    OUTPUT_VARIABLE quavin_libssp
    OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(IS_ABSOLUTE "${quavin_libssp}")
    target_link_libraries(quavin_compiler_settings INTERFACE "${quavin_libssp}")
  endif()
  return()
endif()

target_compile_options(quavin_compiler_settings INTERFACE -fstack-clash-protection)
target_link_options(quavin_compiler_settings INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
# Marks in our own objects. The linker carries them over where the system's start files have them too.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
  target_compile_options(quavin_compiler_settings INTERFACE -fcf-protection=full)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
  target_compile_options(quavin_compiler_settings INTERFACE -mbranch-protection=standard)
endif()
# Programs can be loaded anywhere; all objects are compiled for that already.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
