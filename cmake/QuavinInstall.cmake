# Installs headers, library, CMake package, pkg-config file and documentation. If the OpenVINO runtime came from the
# cache, it is installed beside the library, because it is installed nowhere else. On Windows the toolchain's runtime is
# too. The components are runtime, development, tools and documentation.

include(CMakePackageConfigHelpers)

# The C interface, the runtime, the network reader, the CPU device and its thread library, with their licences;
# docs/releasing.md says what each file is for.
function(quavin_install_runtime)
  get_filename_component(package "${OpenVINO_DIR}/../.." ABSOLUTE)
  set(libs "${package}/openvino/libs")
  if(WIN32)
    set(files ${quavin_engine_dlls})
  else()
    file(GLOB files
         "${libs}/libopenvino.so*"
         "${libs}/libopenvino_c.so*"
         "${libs}/libopenvino_ir_frontend.so*"
         "${libs}/libopenvino_*_cpu_plugin.so*"
         "${libs}/libtbb.so*"
         "${libs}/libtbbmalloc.so*"
         "${libs}/libtbbbind*.so*"
         "${libs}/libhwloc.so*")
  endif()
  if(NOT files)
    message(FATAL_ERROR "There are no runtime libraries to install in ${libs}")
  endif()
  install(FILES ${files} DESTINATION "${quavin_runtime_dir}" COMPONENT runtime)
  file(GLOB licences "${package}/licenses/*")
  install(FILES ${licences} DESTINATION "${CMAKE_INSTALL_DOCDIR}/openvino" COMPONENT runtime)
  set_target_properties(quavin_on_device_sdk PROPERTIES INSTALL_RPATH "$ORIGIN;$ORIGIN/quavin"
                                                        INSTALL_RPATH_USE_LINK_PATH OFF)
endfunction()

set(quavin_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/quavin_on_device_sdk")
set(quavin_runtime_dir "${CMAKE_INSTALL_LIBDIR}/quavin")
if(WIN32)
  set(quavin_runtime_dir "${CMAKE_INSTALL_BINDIR}") # beside the DLL and the programs
endif()

install(
  TARGETS quavin_on_device_sdk
  EXPORT quavin_on_device_sdk_targets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/quavin" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development
        FILES_MATCHING PATTERN "*.h")
# In the same layout as in the sources, so that links between pages, and page names in the headers, stay valid.
install(FILES "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
              "${PROJECT_SOURCE_DIR}/CONTRIBUTING.md" "${PROJECT_SOURCE_DIR}/SECURITY.md"
        DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" "${PROJECT_SOURCE_DIR}/examples" DESTINATION "${CMAKE_INSTALL_DOCDIR}"
        COMPONENT documentation USE_SOURCE_PERMISSIONS PATTERN "__pycache__" EXCLUDE REGEX "/docs/site$"
        EXCLUDE)
install(EXPORT quavin_on_device_sdk_targets NAMESPACE quavin:: DESTINATION "${quavin_package_dir}"
        COMPONENT development)

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/quavin_on_device_sdk-config.cmake.in"
  "${PROJECT_BINARY_DIR}/quavin_on_device_sdk-config.cmake" INSTALL_DESTINATION "${quavin_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/quavin_on_device_sdk-config-version.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/quavin_on_device_sdk-config.cmake"
              "${PROJECT_BINARY_DIR}/quavin_on_device_sdk-config-version.cmake"
        DESTINATION "${quavin_package_dir}" COMPONENT development)
file(RELATIVE_PATH quavin_prefix_from_pc "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
configure_file("${PROJECT_SOURCE_DIR}/packaging/quavin_on_device_sdk.pc.in"
               "${PROJECT_BINARY_DIR}/quavin_on_device_sdk.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/quavin_on_device_sdk.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
        COMPONENT development)

set_target_properties(quavin_on_device_sdk PROPERTIES INSTALL_RPATH "$ORIGIN" INSTALL_RPATH_USE_LINK_PATH ON)
if(WIN32)
  install(FILES ${quavin_toolchain_dlls} DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
endif()
if(quavin_msvc_import_library)
  # With the list of functions that it was made from, for tools that make their own.
  string(REGEX REPLACE "[.]lib$" ".def" quavin_msvc_definitions "${quavin_msvc_import_library}")
  install(FILES "${quavin_msvc_import_library}" "${quavin_msvc_definitions}" DESTINATION "${CMAKE_INSTALL_LIBDIR}"
          COMPONENT development)
endif()
if(QUAVIN_ENGINE_IS_ADAPTER AND QUAVIN_OPENVINO_FROM_CACHE)
  option(QUAVIN_INSTALL_RUNTIME "Install the OpenVINO runtime from the cache beside the library" ON)
  if(QUAVIN_INSTALL_RUNTIME)
    quavin_install_runtime()
  endif()
endif()
