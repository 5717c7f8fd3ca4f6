# Protections that make memory errors harder to exploit, for everything that this project builds. They are part of
# quavin_compiler_settings, which hosts do not inherit.

if(MSVC) # stack cookies, DYNAMICBASE, NXCOMPAT and HIGHENTROPYVA are its defaults
  target_compile_options(quavin_compiler_settings INTERFACE /guard:cf)
  target_link_options(quavin_compiler_settings INTERFACE /guard:cf)
  return()
endif()

# Checked calls need optimisation; some compilers predefine the macro.
set(quavin_fortify_level 3)
if(WIN32)
  set(quavin_fortify_level 2) # the most that MinGW's headers know
endif()
target_compile_options(
  quavin_compiler_settings
  INTERFACE -fstack-protector-strong
            "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=${quavin_fortify_level}>")
# Not _GLIBCXX_ASSERTIONS: with it, the library would need GCC 12's libstdc++ instead of GCC 11's.

if(WIN32)
  target_link_options(quavin_compiler_settings INTERFACE -Wl,--dynamicbase,--nxcompat,--high-entropy-va)
  # The library that the checks call, if the toolchain has a separate one: linked statically, to avoid shipping another
  # DLL. Passing the stack protector's option to the linker would require that DLL.
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
# Marks in our own objects. The linker keeps them only if the system's start files have them too.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
  target_compile_options(quavin_compiler_settings INTERFACE -fcf-protection=full)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
  target_compile_options(quavin_compiler_settings INTERFACE -mbranch-protection=standard)
endif()
# Programs can be loaded at any address; all objects are compiled for that already.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
